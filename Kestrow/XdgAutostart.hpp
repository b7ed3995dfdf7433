// Launch at login the way Linux desktops know it: an entry in the autostart folder, which the
// desktop's own settings show and may switch off.
#pragma once

#include "KestrowCore/LoginItem.hpp"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestrow {

class XdgAutostart : public LoginService {
 public:
  struct Folders {
    std::filesystem::path user;                 // where the entry is written
    std::vector<std::filesystem::path> system;  // the administrator's, the first one counts
  };

  // The folders of the user who runs the program, by the XDG rules.
  static Folders standardFolders();

  // `program` is started at login.
  explicit XdgAutostart(std::filesystem::path program, Folders folders = standardFolders());

  std::filesystem::path fileUrl() const;

  // Enabled when an entry would start a program at the next login, whoever wrote it: neither
  // switched off by a desktop's settings nor pointing at a program that is gone (notFound).
  LoginServiceStatus status() const override;

  // Writes the entry anew. Fails when the folder or the file can't be written, or the program's
  // path is no UTF-8, which an entry can't hold.
  std::expected<void, LoginError> registerItem() override;

  // Takes the entry away; where the administrator has one, hides that for this user instead.
  std::expected<void, LoginError> unregister() override;

  // There is nothing to approve, so nothing to open.
  void openLoginItemsSettings() override {}

 private:
  std::optional<std::string> systemEntry() const;
  std::expected<void, LoginError> write(const std::string& entry) const;

  std::filesystem::path program_;
  Folders folders_;
};

}  // namespace kestrow
