// The file system fails, or changes under the store: what was saved stays whole, nothing hangs, and
// the next save that can succeed does.
#include "KestrowCore/LocalStore.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

namespace kestrow {
namespace {

using std::filesystem::perms;

// Runs the check in a process of its own, as a user for whom permissions hold; gives what it gave.
// Root's children become nobody, anyone else's stay who they are.
template <class Check>
bool asOrdinaryUser(const Check& check) {
  const auto child = ::fork();
  if (child == 0) {
    constexpr uid_t nobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    const bool isReady =
        !isRoot || (::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
    ::_exit(isReady && check() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class LocalStoreFaults : public testing::Test {
 protected:
  LocalStoreFaults() {
    // Whoever asOrdinaryUser() is may come this far.
    std::filesystem::permissions(folder_.path(), perms::all);
    EXPECT_TRUE(store_.setFollowedMatchId("old"));
  }

  bool follow(const std::string& id) { return store_.setFollowedMatchId(id).has_value(); }
  bool follows(const std::string& id) const { return store_.followedMatchId() == id; }

  TemporaryFolder folder_;
  LocalStore store_{folder_.path() / "data"};
};

TEST_F(LocalStoreFaults, AFullDiskLeavesTheOldRecordAndTheNextSaveSucceeds) {
  const auto child = ::fork();
  if (child == 0) {
    // No file may grow beyond a few bytes, as on a disk that is full.
    (void)std::signal(SIGXFSZ, SIG_IGN);
    const rlimit few{.rlim_cur = 8, .rlim_max = RLIM_INFINITY};
    const rlimit any{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
    bool isGood = ::setrlimit(RLIMIT_FSIZE, &few) == 0 && !follow("new") && follows("old");
    isGood = isGood && !store_.setCustomisation({}) && !store_.installId().empty();
    isGood = isGood && ::setrlimit(RLIMIT_FSIZE, &any) == 0 && follow("new") && follows("new");
    ::_exit(isGood ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(store_.directory()), {}), 1);
}

TEST_F(LocalStoreFaults, AFolderThatMayOnlyBeReadIsReadAndKept) {
  std::filesystem::permissions(store_.fileUrl(), perms::owner_read | perms::others_read);
  std::filesystem::permissions(store_.directory(), perms::owner_read | perms::owner_exec |
                                                       perms::others_read | perms::others_exec);
  EXPECT_TRUE(asOrdinaryUser([&] { return follows("old") && !follow("new") && follows("old"); }));
  std::filesystem::permissions(store_.directory(), perms::all);
  EXPECT_TRUE(asOrdinaryUser([&] { return follow("new") && follows("new"); }));
}

TEST_F(LocalStoreFaults, AFileThatBecameSomebodyElsesReadsAsEmptyAndOnlyAChoiceReplacesIt) {
  std::filesystem::permissions(store_.directory(), perms::all);
  std::filesystem::permissions(store_.fileUrl(), perms::none);
  EXPECT_TRUE(asOrdinaryUser([&] {
    const auto note = [](StoredState& state) { state.installId = "noted"; };
    return store_.load() == StoredState() && !store_.updateReadable(note) && follow("new") &&
           follows("new");
  }));
}

TEST_F(LocalStoreFaults, AFolderThatAFileTookThePlaceOfIsUsedAgainOnceItIsBack) {
  const auto aside = folder_.path() / "aside";
  std::filesystem::rename(store_.directory(), aside);
  writeFile(store_.directory(), "a file");
  EXPECT_EQ(store_.load(), StoredState());
  EXPECT_FALSE(follow("new"));
  EXPECT_EQ(fileContent(store_.directory()), "a file");
  std::filesystem::remove(store_.directory());
  std::filesystem::rename(aside, store_.directory());
  EXPECT_TRUE(follows("old"));
  EXPECT_TRUE(follow("new"));
}

TEST_F(LocalStoreFaults, AFolderThatIsDeletedIsMadeAgain) {
  std::filesystem::remove_all(store_.directory());
  EXPECT_EQ(store_.load(), StoredState());
  EXPECT_TRUE(follow("new"));
  EXPECT_TRUE(follows("new"));
}

TEST_F(LocalStoreFaults, LinksToNowhereAndInCirclesAreReplaced) {
  for (const char* target : {"nowhere", "state.json", "/proc/self/fd/999"}) {
    std::filesystem::remove(store_.fileUrl());
    std::filesystem::create_symlink(target, store_.fileUrl());
    EXPECT_EQ(store_.load(), StoredState()) << target;
    EXPECT_TRUE(follow("new")) << target;
    EXPECT_TRUE(
        std::filesystem::is_regular_file(std::filesystem::symlink_status(store_.fileUrl())));
  }
}

TEST_F(LocalStoreFaults, DevicesAndSystemFilesInItsPlaceNeitherHangNorFillMemory) {
  for (const char* target : {"/dev/zero", "/dev/full", "/dev/tty", "/proc/self/mem"}) {
    std::filesystem::remove(store_.fileUrl());
    std::filesystem::create_symlink(target, store_.fileUrl());
    EXPECT_EQ(store_.load(), StoredState()) << target;
  }
  EXPECT_TRUE(follow("new"));
}

}  // namespace
}  // namespace kestrow
