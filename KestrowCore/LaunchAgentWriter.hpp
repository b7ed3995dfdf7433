// The launch agent: a property list in the user's Library that makes macOS open the program at
// login.
#pragma once

#include "KestrowCore/Identity.hpp"
#include "KestrowCore/LoginItem.hpp"

#include <expected>
#include <filesystem>
#include <string>

namespace kestrow {

class LaunchAgentWriter : public LaunchAgentFile {
 public:
  static constexpr const char* label = identity::bundleIdentifier;
  static constexpr const char* standardAppPath = "/Applications/Kestrow.app";

  // The folder where the system looks for the user's launch agents.
  static std::filesystem::path defaultDirectory();

  // `appPath` is the application bundle to open.
  explicit LaunchAgentWriter(std::filesystem::path directory = defaultDirectory(),
                             std::string appPath = standardAppPath);

  const std::filesystem::path& directory() const { return directory_; }
  const std::string& appPath() const { return appPath_; }
  std::filesystem::path fileUrl() const;

  // The file's content. Fails when XML can't hold the application's path.
  std::expected<std::string, LoginError> plistData() const;

  bool isInstalled() const override;
  std::expected<void, LoginError> install() override;
  std::expected<void, LoginError> remove() override;  // no file is no failure

 private:
  std::filesystem::path directory_;
  std::string appPath_;
};

}  // namespace kestrow
