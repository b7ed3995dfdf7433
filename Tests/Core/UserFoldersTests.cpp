#include "KestrowCore/UserFolders.hpp"
#include "Tests/Support/Environment.hpp"

#include <gmock/gmock.h>
#include <pwd.h>
#include <unistd.h>

namespace kestrow {
namespace {

std::filesystem::path listedHome() {
  return ::getpwuid(::getuid())->pw_dir;
}

TEST(UserFolders, TheHomeFolderIsTheOneThatTheEnvironmentNames) {
  const EnvironmentVariable home("HOME", "/somewhere/else");
  EXPECT_EQ(user_folders::home(), "/somewhere/else");
}

TEST(UserFolders, WithoutAnAbsoluteNameTheUserListTellsTheHomeFolder) {
  for (const std::optional<std::string>& value : {std::optional<std::string>(), {""}, {"home"}}) {
    const EnvironmentVariable home("HOME", value);
    EXPECT_EQ(user_folders::home(), listedHome());
  }
}

TEST(UserFolders, ABaseFolderIsTheVariablesWhenAbsoluteElseTheOneAtHome) {
  const EnvironmentVariable home("HOME", "/home/u");
  {
    const EnvironmentVariable config("XDG_CONFIG_HOME", "/elsewhere");
    EXPECT_EQ(user_folders::xdg("XDG_CONFIG_HOME", ".config"), "/elsewhere");
  }
  for (const std::optional<std::string>& value : {std::optional<std::string>(), {""}, {"./x"}}) {
    const EnvironmentVariable config("XDG_CONFIG_HOME", value);
    EXPECT_EQ(user_folders::xdg("XDG_CONFIG_HOME", ".config"), "/home/u/.config");
  }
}

TEST(UserFolders, DataBelongWhereTheSystemKeepsThem) {
  const EnvironmentVariable home("HOME", "/home/u");
#ifdef __APPLE__
  EXPECT_EQ(user_folders::data(), "/home/u/Library/Application Support");
#else
  {
    const EnvironmentVariable data("XDG_DATA_HOME", "/data");
    EXPECT_EQ(user_folders::data(), "/data");
  }
  const EnvironmentVariable data("XDG_DATA_HOME", std::nullopt);
  EXPECT_EQ(user_folders::data(), "/home/u/.local/share");
#endif
}

}  // namespace
}  // namespace kestrow
