// Launch at login through the system's login items, which the user sees in System Settings.
#pragma once

#include "KestrowCore/LoginItem.hpp"

#include <expected>

namespace kestrow::appkit {

class MainAppLoginService final : public LoginService {
 public:
  // Asked of the system each time: the user may change it there.
  LoginServiceStatus status() const override;
  std::expected<void, LoginError> registerItem() override;
  std::expected<void, LoginError> unregister() override;
  void openLoginItemsSettings() override;
};

}  // namespace kestrow::appkit
