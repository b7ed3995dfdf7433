#include "KestrowCore/AtomicFile.hpp"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/inotify.h>
#endif

#include "Tests/Support/TemporaryFolder.hpp"

#include <array>
#include <csignal>
#include <vector>

namespace kestrow {
namespace {

using std::filesystem::perms;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr auto ownerOnly = perms::owner_read | perms::owner_write;

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

perms permissionsOf(const std::filesystem::path& path) {
  return std::filesystem::status(path).permissions();
}

// Sets the process's mask for the length of a scope.
class Mask {
 public:
  explicit Mask(mode_t mask) : before_(::umask(mask)) {}
  Mask(const Mask&) = delete;
  Mask& operator=(const Mask&) = delete;
  ~Mask() { ::umask(before_); }

 private:
  mode_t before_;
};

// Lets no file of this process grow beyond a size, as a full disk would, for the length of a scope.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handlerBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{.rlim_cur = bytes, .rlim_max = before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    (void)std::signal(SIGXFSZ, handlerBefore_);
  }

 private:
  rlimit before_{};
  void (*handlerBefore_)(int);
};

class AtomicFileTest : public testing::Test {
 public:
  TemporaryFolder folder;
  std::filesystem::path file = folder.path() / "state.json";
};

TEST_F(AtomicFileTest, WritesTheBytesAndLeavesNothingBeside) {
  const std::string bytes("a\0b\n", 4);
  ASSERT_TRUE(atomic_file::write(file, bytes, ownerOnly));
  EXPECT_EQ(fileContent(file), bytes);
  EXPECT_THAT(namesIn(folder.path()), ElementsAre("state.json"));
  ASSERT_TRUE(atomic_file::write(file, "", ownerOnly));
  EXPECT_EQ(fileContent(file), "");
}

TEST_F(AtomicFileTest, ThePermissionsAreExactWhateverTheMask) {
  for (const mode_t mask : {0U, 0077U, 0777U}) {
    const Mask during(mask);
    ASSERT_TRUE(atomic_file::write(file, "x", ownerOnly));
    EXPECT_EQ(permissionsOf(file), ownerOnly);
    ASSERT_TRUE(atomic_file::write(file, "x", ownerOnly | perms::group_read | perms::others_read));
    EXPECT_EQ(permissionsOf(file), ownerOnly | perms::group_read | perms::others_read);
  }
}

TEST_F(AtomicFileTest, ReplacesAFileThatIsReadOnlyOrALink) {
  writeFile(folder.path() / "target", "kept");
  std::filesystem::create_symlink("target", file);
  ASSERT_TRUE(atomic_file::write(file, "new", ownerOnly));
  EXPECT_FALSE(std::filesystem::is_symlink(file));
  EXPECT_EQ(fileContent(folder.path() / "target"), "kept");
  std::filesystem::permissions(file, perms::owner_read);
  ASSERT_TRUE(atomic_file::write(file, "newer", ownerOnly));
  EXPECT_EQ(fileContent(file), "newer");
}

TEST_F(AtomicFileTest, AFullDiskLeavesTheOldFileAndNothingBeside) {
  writeFile(file, "old");
  std::expected<void, std::error_code> written;
  {
    const FileSizeLimit limit(4096);
    written = atomic_file::write(file, std::string(100'000, 'x'), ownerOnly);
  }
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error(), std::errc::file_too_large);
  EXPECT_EQ(fileContent(file), "old");
  EXPECT_THAT(namesIn(folder.path()), ElementsAre("state.json"));
}

TEST_F(AtomicFileTest, AFailedMoveLeavesNothingBeside) {
  std::filesystem::create_directory(file);
  const auto written = atomic_file::write(file, "x", ownerOnly);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error(), std::errc::is_a_directory);
  EXPECT_THAT(namesIn(folder.path()), ElementsAre("state.json"));
}

TEST_F(AtomicFileTest, TellsWhyTheFileCannotBeMade) {
  EXPECT_EQ(atomic_file::write(folder.path() / "missing" / "f", "x", ownerOnly).error(),
            std::errc::no_such_file_or_directory);
  EXPECT_EQ(atomic_file::write(folder.path() / std::string(250, 'f'), "x", ownerOnly).error(),
            std::errc::filename_too_long);
}

#ifdef __linux__
TEST_F(AtomicFileTest, TheFileOnItsWayIsHiddenAndNamedAnew) {
  const int watch = ::inotify_init1(IN_NONBLOCK);
  ASSERT_GE(::inotify_add_watch(watch, folder.path().c_str(), IN_CREATE), 0);
  ASSERT_TRUE(atomic_file::write(file, "1", ownerOnly));
  ASSERT_TRUE(atomic_file::write(file, "2", ownerOnly));
  alignas(inotify_event) std::array<char, 4096> events{};
  const auto size = ::read(watch, events.data(), events.size());
  ::close(watch);
  std::vector<std::string> names;
  for (std::ptrdiff_t at = 0; at < size;) {
    const auto* event = reinterpret_cast<const inotify_event*>(events.data() + at);
    names.emplace_back(event->name);
    at += static_cast<std::ptrdiff_t>(sizeof(inotify_event) + event->len);
  }
  ASSERT_EQ(names.size(), 2U);
  EXPECT_NE(names[0], names[1]);
  for (const auto& name : names) {
    EXPECT_THAT(name, testing::MatchesRegex(
                          R"(\.state\.[0-9A-F]+-[0-9A-F]+-4[0-9A-F]+-[0-9A-F]+-[0-9A-F]+\.tmp)"));
  }
}
#endif

TEST_F(AtomicFileTest, ReadsFilesOfEverySizeUpToTheLimit) {
  for (const std::size_t size : {0U, 1U, 65'535U, 65'536U, 65'537U, 200'000U}) {
    const std::string bytes(size, 'x');
    writeFile(file, bytes);
    EXPECT_EQ(atomic_file::read(file, 200'000), bytes);
  }
  EXPECT_EQ(atomic_file::read(file, 199'999).error(), std::errc::file_too_large);
}

// The number that the next file opened would get.
int nextDescriptor() {
  const int number = ::dup(STDERR_FILENO);
  ::close(number);
  return number;
}

TEST_F(AtomicFileTest, LeavesNoFileOpen) {
  const auto before = nextDescriptor();
  ASSERT_TRUE(atomic_file::write(file, "x", ownerOnly));
  ASSERT_TRUE(atomic_file::read(file, 100));
  EXPECT_FALSE(atomic_file::read(folder.path(), 100));
  EXPECT_FALSE(atomic_file::read(file, 0));
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_FALSE(atomic_file::write(file, "x", ownerOnly));
  EXPECT_EQ(nextDescriptor(), before);
}

TEST_F(AtomicFileTest, ReadsThroughALink) {
  writeFile(folder.path() / "target", "content");
  std::filesystem::create_symlink("target", file);
  EXPECT_EQ(atomic_file::read(file, 100), "content");
}

TEST_F(AtomicFileTest, ReadsNothingButFiles) {
  EXPECT_EQ(atomic_file::read(file, 100).error(), std::errc::no_such_file_or_directory);
  EXPECT_EQ(atomic_file::read(folder.path(), 100).error(), std::errc::is_a_directory);
  EXPECT_EQ(atomic_file::read("/dev/zero", 100).error(), std::errc::invalid_argument);
}

TEST_F(AtomicFileTest, APipeDoesNotKeepTheReaderWaiting) {
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(atomic_file::read(file, 100).error(), std::errc::invalid_argument);
}

TEST_F(AtomicFileTest, MakesEveryMissingFolderWithThePermissionsWhateverTheMask) {
  for (const mode_t mask : {0U, 0777U}) {
    const Mask during(mask);
    const auto top = folder.path() / std::to_string(mask);
    ASSERT_TRUE(atomic_file::makeFolders(top / "middle" / "bottom", perms::owner_all));
    for (const auto& made : {top, top / "middle", top / "middle" / "bottom"}) {
      EXPECT_EQ(permissionsOf(made), perms::owner_all) << made;
    }
  }
}

TEST_F(AtomicFileTest, LeavesFoldersThatAreThereAsTheyAre) {
  constexpr auto open = perms::owner_all | perms::group_read | perms::group_exec;
  std::filesystem::permissions(folder.path(), open);
  ASSERT_TRUE(atomic_file::makeFolders(folder.path(), perms::owner_all));
  ASSERT_TRUE(atomic_file::makeFolders(folder.path() / "new" / "", perms::owner_all));
  EXPECT_EQ(permissionsOf(folder.path()), open);
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("new"));
}

TEST_F(AtomicFileTest, MakesAFolderNamedFromTheCurrentOne) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  const auto made = atomic_file::makeFolders("relative", perms::owner_all);
  std::filesystem::current_path(before);
  EXPECT_TRUE(made);
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "relative"));
}

TEST_F(AtomicFileTest, TellsWhyAFolderCannotBeMade) {
  writeFile(file, "");
  EXPECT_EQ(atomic_file::makeFolders(file, perms::owner_all).error(), std::errc::file_exists);
  EXPECT_EQ(atomic_file::makeFolders(file / "a" / "b", perms::owner_all).error(),
            std::errc::file_exists);
}

}  // namespace
}  // namespace kestrow
