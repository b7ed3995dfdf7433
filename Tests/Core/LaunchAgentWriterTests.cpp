#include "KestrowCore/LaunchAgentWriter.hpp"
#include "Tests/Support/Environment.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <cstdlib>

namespace kestrow {
namespace {

using std::filesystem::perms;

class LaunchAgentWriterTest : public testing::Test {
 public:
  TemporaryFolder folder;
  std::filesystem::path agents = folder.path() / "Library" / "LaunchAgents";
  LaunchAgentWriter writer{agents};
};

TEST_F(LaunchAgentWriterTest, OpensTheApplicationInstalledForAllByDefault) {
  const EnvironmentVariable home("HOME", "/Users/u");
  const LaunchAgentWriter standard;
  EXPECT_EQ(standard.directory(), "/Users/u/Library/LaunchAgents");
  EXPECT_EQ(standard.appPath(), "/Applications/Kestrow.app");
  EXPECT_EQ(standard.fileUrl(), "/Users/u/Library/LaunchAgents/org.kestrow.Kestrow.plist");
}

TEST_F(LaunchAgentWriterTest, InstallsAndRemovesTheFile) {
  EXPECT_FALSE(writer.isInstalled());
  ASSERT_TRUE(writer.install());
  EXPECT_TRUE(writer.isInstalled());
  EXPECT_EQ(fileContent(writer.fileUrl()), writer.plistData());
  EXPECT_EQ(std::filesystem::status(writer.fileUrl()).permissions(),
            perms::owner_read | perms::owner_write | perms::group_read | perms::others_read);
  ASSERT_TRUE(writer.install());
  ASSERT_TRUE(writer.remove());
  EXPECT_FALSE(writer.isInstalled());
  EXPECT_TRUE(std::filesystem::is_empty(agents));
}

TEST_F(LaunchAgentWriterTest, RemovingWithoutAFileDoesNothing) {
  EXPECT_TRUE(writer.remove());
  EXPECT_FALSE(std::filesystem::exists(agents));
}

TEST_F(LaunchAgentWriterTest, TellsWhyTheFileCannotBeWritten) {
  writeFile(folder.path() / "Library", "a file");
  const auto installed = writer.install();
  ASSERT_FALSE(installed);
  EXPECT_EQ(installed.error().description,
            std::make_error_code(std::errc::not_a_directory).message());
  EXPECT_FALSE(writer.isInstalled());
}

TEST_F(LaunchAgentWriterTest, TellsWhyTheFileCannotBePutInPlaceOrRemoved) {
  std::filesystem::create_directories(writer.fileUrl() / "full");
  EXPECT_TRUE(writer.isInstalled());
  const auto installed = writer.install();
  ASSERT_FALSE(installed);
  EXPECT_EQ(installed.error().description,
            std::make_error_code(std::errc::is_a_directory).message());
  const auto removed = writer.remove();
  ASSERT_FALSE(removed);
  EXPECT_EQ(removed.error().description,
            std::make_error_code(std::errc::directory_not_empty).message());
}

TEST_F(LaunchAgentWriterTest, RefusesAPathThatXmlCannotHold) {
  for (const std::string& path :
       {std::string("/a\x01"), std::string("/a\0b", 4), std::string("/a\x1f"), std::string("/\xff"),
        std::string("/\xef\xbf\xbe"), std::string("/\xef\xbf\xbf")}) {
    LaunchAgentWriter odd(agents, path);
    ASSERT_FALSE(odd.plistData());
    EXPECT_EQ(odd.plistData().error().description, "the application's path is not plain text");
    EXPECT_FALSE(odd.install());
    EXPECT_FALSE(odd.isInstalled());
  }
}

// What a property-list reader that is not ours makes of the file.
std::string readBack(const std::filesystem::path& folder, const std::filesystem::path& file) {
  const auto script = folder / "read.py";
  const auto out = folder / "read.txt";
  writeFile(script,
            "import plistlib, sys\n"
            "content = open(sys.argv[1], 'rb').read()\n"
            "plist = plistlib.loads(content, fmt=plistlib.FMT_XML)\n"
            "open(sys.argv[2], 'wb').write(repr(sorted(plist.items())).encode())\n");
  const auto command =
      "python3 '" + script.string() + "' '" + file.string() + "' '" + out.string() + "'";
  // NOLINTNEXTLINE(bugprone-command-processor): the test's own paths
  EXPECT_EQ(std::system(command.c_str()), 0);
  return fileContent(out);
}

TEST_F(LaunchAgentWriterTest, APropertyListReaderUnderstandsTheFile) {
  ASSERT_TRUE(writer.install());
  EXPECT_EQ(readBack(folder.path(), writer.fileUrl()),
            "[('Label', 'org.kestrow.Kestrow'), "
            "('ProgramArguments', ['/usr/bin/open', '-a', '/Applications/Kestrow.app']), "
            "('RunAtLoad', True)]");
}

TEST_F(LaunchAgentWriterTest, EveryCharacterOfThePathComesThrough) {
  LaunchAgentWriter odd(agents, "/A & <B>\t]]>\"C\"\r\n/\u00dcber \U0001F3CF/&amp;.app");
  ASSERT_TRUE(odd.install());
  EXPECT_EQ(readBack(folder.path(), odd.fileUrl()),
            "[('Label', 'org.kestrow.Kestrow'), ('ProgramArguments', ['/usr/bin/open', '-a', "
            "'/A & <B>\\t]]>\"C\"\\r\\n/\u00dcber \U0001F3CF/&amp;.app']), ('RunAtLoad', True)]");
}

}  // namespace
}  // namespace kestrow
