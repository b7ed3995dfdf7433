#include "Kestrow/XdgAutostart.hpp"

#include "Kestrow/DesktopEntry.hpp"
#include "KestrowCore/AtomicFile.hpp"
#include "KestrowCore/Identity.hpp"
#include "KestrowCore/Text.hpp"
#include "KestrowCore/UserFolders.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

namespace kestrow {

namespace {

using std::filesystem::perms;

constexpr auto folderPermissions = perms::owner_all;
constexpr auto filePermissions =
    perms::owner_read | perms::owner_write | perms::group_read | perms::others_read;
constexpr std::size_t largestEntry = 65'536;  // bytes
constexpr const char* folderName = "autostart";

std::string fileName() {
  return std::string(identity::bundleIdentifier) + ".desktop";
}

std::optional<std::string> content(const std::filesystem::path& file) {
  auto bytes = atomic_file::read(file, largestEntry);
  if (!bytes) return std::nullopt;
  return *std::move(bytes);
}

// Desktops have keys of their own beside the common one, all made alike:
// "X-GNOME-Autostart-enabled".
bool isSwitchedOff(const desktop_entry::Keys& keys) {
  return std::ranges::any_of(keys, [](const auto& entry) {
    const auto& [key, value] = entry;
    if (key == "Hidden") return value == "true";
    return key.starts_with("X-") && key.ends_with("-Autostart-enabled") && value == "false";
  });
}

bool isThere(const std::filesystem::path& program) {
  if (!program.is_absolute()) return true;  // the desktop looks it up in its own search path
  std::error_code ignored;
  return std::filesystem::is_regular_file(program, ignored) && ::access(program.c_str(), X_OK) == 0;
}

// A desktop starts an entry whose program it finds, and only where the one that the entry is about
// is there too.
bool startsProgram(const desktop_entry::Keys& keys) {
  const auto exec = keys.find("Exec");
  if (exec == keys.end()) return false;
  const auto program = desktop_entry::program(exec->second);
  const auto about = keys.find("TryExec");
  return program && isThere(*program) && (about == keys.end() || isThere(about->second));
}

std::unexpected<LoginError> failure(const std::error_code& cause) {
  return std::unexpected(LoginError{.description = cause.message()});
}

std::vector<std::filesystem::path> systemConfigFolders() {
  std::vector<std::filesystem::path> folders;
  const char* variable = std::getenv("XDG_CONFIG_DIRS");
  std::string_view rest = variable && *variable != '\0' ? variable : "/etc/xdg";
  while (!rest.empty()) {
    const auto end = std::min(rest.find(':'), rest.size());
    const std::filesystem::path folder(rest.substr(0, end));
    if (folder.is_absolute()) folders.push_back(folder / folderName);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return folders;
}

}  // namespace

XdgAutostart::Folders XdgAutostart::standardFolders() {
  return {.user = user_folders::xdg("XDG_CONFIG_HOME", ".config") / folderName,
          .system = systemConfigFolders()};
}

XdgAutostart::XdgAutostart(std::filesystem::path program, Folders folders)
    : program_(std::move(program)), folders_(std::move(folders)) {}

std::filesystem::path XdgAutostart::fileUrl() const {
  return folders_.user / fileName();
}

LoginServiceStatus XdgAutostart::status() const {
  auto entry = content(fileUrl());
  if (!entry) entry = systemEntry();
  if (!entry) return LoginServiceStatus::notRegistered;
  const auto keys = desktop_entry::parse(*entry);
  if (isSwitchedOff(keys)) return LoginServiceStatus::notRegistered;
  return startsProgram(keys) ? LoginServiceStatus::enabled : LoginServiceStatus::notFound;
}

std::optional<std::string> XdgAutostart::systemEntry() const {
  for (const auto& folder : folders_.system) {
    if (auto entry = content(folder / fileName())) return entry;
  }
  return std::nullopt;
}

std::expected<void, LoginError> XdgAutostart::registerItem() {
  const std::string program = program_.string();
  if (text::validated(program) != program) {
    return std::unexpected(LoginError{.description = "the program's path is not UTF-8"});
  }
  return write("Type=Application\nName=" + std::string(identity::name) +
               "\nComment=Follow one live cricket match\nTryExec=" + desktop_entry::value(program) +
               "\nExec=" + desktop_entry::exec(program) +
               "\nTerminal=false\nX-GNOME-Autostart-enabled=true\n");
}

std::expected<void, LoginError> XdgAutostart::unregister() {
  if (systemEntry()) {
    return write("Type=Application\nName=" + std::string(identity::name) + "\nHidden=true\n");
  }
  std::error_code cause;
  std::filesystem::remove(fileUrl(), cause);
  if (cause) return failure(cause);
  return {};
}

std::expected<void, LoginError> XdgAutostart::write(const std::string& entry) const {
  if (const auto made = atomic_file::makeFolders(folders_.user, folderPermissions); !made) {
    return failure(made.error());
  }
  const auto written = atomic_file::write(fileUrl(), "[Desktop Entry]\n" + entry, filePermissions);
  if (!written) return failure(written.error());
  return {};
}

}  // namespace kestrow
