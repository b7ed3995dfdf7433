#include "KestrowCore/UserFolders.hpp"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <optional>
#include <utility>

namespace kestrow::user_folders {

namespace {

// A relative path would mean another folder wherever the program is started.
std::optional<std::filesystem::path> absolutePath(const char* text) {
  if (!text) return std::nullopt;
  std::filesystem::path path(text);
  if (!path.is_absolute()) return std::nullopt;
  return path;
}

}  // namespace

std::filesystem::path home() {
  if (auto path = absolutePath(std::getenv("HOME"))) return *std::move(path);
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16384> texts{};
  (void)getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found);
  if (found) {
    if (auto path = absolutePath(found->pw_dir)) return *std::move(path);
  }
  return "/";
}

std::filesystem::path xdg(const char* variable, const char* inHome) {
  if (auto path = absolutePath(std::getenv(variable))) return *std::move(path);
  return home() / inHome;
}

std::filesystem::path data() {
#ifdef __APPLE__
  return home() / "Library/Application Support";
#else
  return xdg("XDG_DATA_HOME", ".local/share");
#endif
}

}  // namespace kestrow::user_folders
