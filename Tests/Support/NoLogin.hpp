// A desktop on which the program never starts at login.
#pragma once

#include "KestrowCore/LoginItem.hpp"

#include <expected>

namespace kestrow {

class NoLoginService final : public LoginService {
 public:
  LoginServiceStatus status() const override { return LoginServiceStatus::notRegistered; }
  std::expected<void, LoginError> registerItem() override { return {}; }
  std::expected<void, LoginError> unregister() override { return {}; }
  void openLoginItemsSettings() override {}
};

class NoLaunchAgent final : public LaunchAgentFile {
 public:
  bool isInstalled() const override { return false; }
  std::expected<void, LoginError> install() override { return {}; }
  std::expected<void, LoginError> remove() override { return {}; }
};

}  // namespace kestrow
