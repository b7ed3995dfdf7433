#include "Kestrow/XdgAutostart.hpp"
#include "Tests/Support/Environment.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class XdgAutostartTest : public testing::Test {
 protected:
  XdgAutostartTest() {
    std::filesystem::create_directories(program_.parent_path());
    std::filesystem::create_directories(system_);
    writeFile(program_, "#!/bin/sh\n");
    std::filesystem::permissions(program_, std::filesystem::perms::owner_all);
  }
  void entry(const std::string& keys) {
    std::filesystem::create_directories(user_);
    writeFile(autostart_.fileUrl(), "[Desktop Entry]\n" + keys);
  }
  void systemEntry(const std::string& keys) {
    writeFile(system_ / "org.kestrow.Kestrow.desktop", "[Desktop Entry]\n" + keys);
  }

  TemporaryFolder folder_;
  std::filesystem::path user_ = folder_.path() / "config" / "autostart";
  std::filesystem::path system_ = folder_.path() / "xdg" / "autostart";
  std::filesystem::path program_ = folder_.path() / "My $HOME 100%" / "kes\"trow";
  XdgAutostart autostart_{program_, {.user = user_, .system = {folder_.path() / "none", system_}}};
};

TEST_F(XdgAutostartTest, IsOffWithoutAnEntry) {
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notRegistered);
}

TEST_F(XdgAutostartTest, RegisteringWritesAnEntryThatStartsTheProgram) {
  ASSERT_TRUE(autostart_.registerItem());
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::enabled);
  EXPECT_EQ(autostart_.fileUrl(), user_ / "org.kestrow.Kestrow.desktop");
  const auto content = fileContent(autostart_.fileUrl());
  EXPECT_THAT(content, testing::StartsWith("[Desktop Entry]\nType=Application\nName=Kestrow\n"));
  EXPECT_THAT(content, HasSubstr("\nTryExec=" + program_.string() + "\n"));
  EXPECT_THAT(content, HasSubstr("\nExec=nice -n 0 \"" + folder_.path().string() +
                                 R"(/My \\$HOME 100%%/kes\\"trow")" + "\n"));
  EXPECT_THAT(content, HasSubstr("\nTerminal=false\n"));
  EXPECT_THAT(content, HasSubstr("\nX-GNOME-Autostart-enabled=true\n"));
}

TEST_F(XdgAutostartTest, TheEntryIsTheOnlyFileLeftAndReadableByTheDesktop) {
  ASSERT_TRUE(autostart_.registerItem());
  ASSERT_TRUE(autostart_.registerItem());
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(user_)) {
    names.push_back(file.path().filename());
  }
  EXPECT_THAT(names, ElementsAre("org.kestrow.Kestrow.desktop"));
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(autostart_.fileUrl()).permissions()),
            0644U);
}

TEST_F(XdgAutostartTest, AnEntrySwitchedOffByTheDesktopShowsAsOff) {
  const std::string exec = "Exec=kestrow\n";
  entry(exec);
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::enabled);
  for (const std::string off :
       {"Hidden=true", "X-GNOME-Autostart-enabled=false", "X-MATE-Autostart-enabled=false"}) {
    entry(exec + off + "\n");
    EXPECT_EQ(autostart_.status(), LoginServiceStatus::notRegistered) << off;
  }
  for (const std::string on :
       {"Hidden=false", "X-GNOME-Autostart-enabled=true", "X-GNOME-Autostart-Delay=false"}) {
    entry(exec + on + "\n");
    EXPECT_EQ(autostart_.status(), LoginServiceStatus::enabled) << on;
  }
}

TEST_F(XdgAutostartTest, RegisteringAgainSwitchesItBackOn) {
  entry("Exec=kestrow\nHidden=true\n");
  ASSERT_TRUE(autostart_.registerItem());
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::enabled);
}

TEST_F(XdgAutostartTest, AnEntryWhoseProgramHasGoneStartsNothing) {
  ASSERT_TRUE(autostart_.registerItem());
  std::filesystem::permissions(program_, std::filesystem::perms::owner_read);
  if (::geteuid() != 0) {
    EXPECT_EQ(autostart_.status(), LoginServiceStatus::notFound);
  }
  std::filesystem::remove(program_);
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notFound);
  std::filesystem::create_directory(program_);
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notFound);
  entry("Exec=/bin/sh\nTryExec=" + program_.string() + "\n");
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notFound);
  entry("Name=Kestrow\nTryExec=/bin/sh\n");
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notFound);
  entry("Exec=\"broken\n");
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notFound);
}

TEST_F(XdgAutostartTest, UnregisteringTakesTheEntryAway) {
  ASSERT_TRUE(autostart_.registerItem());
  ASSERT_TRUE(autostart_.unregister());
  EXPECT_FALSE(std::filesystem::exists(autostart_.fileUrl()));
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notRegistered);
  EXPECT_TRUE(autostart_.unregister()) << "no entry is no failure";
}

TEST_F(XdgAutostartTest, TheAdministratorsEntryCountsUnlessTheUserHasOne) {
  systemEntry("Exec=kestrow\n");
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::enabled);
  entry("Exec=kestrow\nHidden=true\n");
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notRegistered);
}

TEST_F(XdgAutostartTest, TheAdministratorsEntryIsHiddenForTheUserAlone) {
  systemEntry("Exec=kestrow\n");
  ASSERT_TRUE(autostart_.unregister());
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notRegistered);
  EXPECT_TRUE(std::filesystem::exists(system_ / "org.kestrow.Kestrow.desktop"));
  ASSERT_TRUE(autostart_.registerItem());
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::enabled);
}

TEST_F(XdgAutostartTest, AFolderThatCannotBeMadeIsAFailureAndStaysOff) {
  writeFile(folder_.path() / "config", "a file in the way");
  EXPECT_FALSE(autostart_.registerItem());
  EXPECT_EQ(autostart_.status(), LoginServiceStatus::notRegistered);
}

TEST_F(XdgAutostartTest, AnEntryThatCannotBeRemovedIsAFailure) {
  std::filesystem::create_directories(autostart_.fileUrl() / "full");
  EXPECT_FALSE(autostart_.unregister());
}

TEST_F(XdgAutostartTest, APathThatIsNoTextIsRefused) {
  XdgAutostart odd("/opt/\xFF/kestrow", {.user = user_, .system = {}});
  EXPECT_FALSE(odd.registerItem());
  EXPECT_FALSE(std::filesystem::exists(odd.fileUrl()));
}

TEST(XdgAutostart, FoldersFollowTheEnvironment) {
  const EnvironmentVariable config("XDG_CONFIG_HOME", "/c");
  {
    const EnvironmentVariable directories("XDG_CONFIG_DIRS", "/a:relative::/b");
    const auto folders = XdgAutostart::standardFolders();
    EXPECT_EQ(folders.user, "/c/autostart");
    EXPECT_THAT(folders.system, ElementsAre("/a/autostart", "/b/autostart"));
  }
  for (const bool isSet : {true, false}) {
    const EnvironmentVariable directories("XDG_CONFIG_DIRS",
                                          isSet ? std::optional<std::string>("") : std::nullopt);
    EXPECT_THAT(XdgAutostart::standardFolders().system, ElementsAre("/etc/xdg/autostart"));
  }
  const EnvironmentVariable relative("XDG_CONFIG_HOME", "c");
  const EnvironmentVariable home("HOME", "/h");
  EXPECT_EQ(XdgAutostart::standardFolders().user, "/h/.config/autostart");
}

}  // namespace
}  // namespace kestrow
