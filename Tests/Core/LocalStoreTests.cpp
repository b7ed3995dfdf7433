#include "KestrowCore/LocalStore.hpp"
#include "Tests/Support/Environment.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace kestrow {
namespace {

using std::filesystem::perms;
using testing::ElementsAre;
using testing::MatchesRegex;

using Ids = std::map<std::string, std::int64_t>;
using Texts = std::map<std::string, std::string>;

void doNothing(StoredState& /*state*/) {}

class LocalStoreTest : public testing::Test {
 public:
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(store.directory())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  void put(std::string_view content) const {
    std::filesystem::create_directories(store.directory());
    writeFile(store.fileUrl(), content);
  }

  TemporaryFolder folder;
  LocalStore store{folder.path() / "data" / "Kestrow"};
};

TEST_F(LocalStoreTest, ReadingMakesNothingOnTheDisk) {
  EXPECT_EQ(store.load(), StoredState());
  EXPECT_FALSE(store.followedMatchId());
  EXPECT_EQ(store.customisation(), Customisation());
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(LocalStoreTest, TheFirstSaveMakesFoldersAndFileForTheUserAlone) {
  const auto mask = ::umask(0);
  EXPECT_TRUE(store.setFollowedMatchId("a"));
  ::umask(mask);
  const auto permissions = [](const auto& path) {
    return std::filesystem::status(path).permissions();
  };
  EXPECT_EQ(permissions(store.directory()), perms::owner_all);
  EXPECT_EQ(permissions(store.directory().parent_path()), perms::owner_all);
  EXPECT_EQ(permissions(store.fileUrl()), perms::owner_read | perms::owner_write);
  EXPECT_EQ(store.fileUrl(), store.directory() / "state.json");
}

TEST_F(LocalStoreTest, WritesReadableJsonWithSortedKeys) {
  const StoredState whole{.followedMatchId = "m\"1\n",
                          .installId = "i",
                          .lastEventIdByMatch = Ids{{"z", -1}, {"é", 9223372036854775807}},
                          .customisation = Texts{{"theme", "mi"}, {"alertStyle", "subtle"}}};
  EXPECT_EQ(store.update([&](StoredState& state) { state = whole; }), whole);
  EXPECT_EQ(fileContent(store.fileUrl()), R"({
  "customisation": {
    "alertStyle": "subtle",
    "theme": "mi"
  },
  "followedMatchId": "m\"1\n",
  "installId": "i",
  "lastEventIdByMatch": {
    "z": -1,
    "é": 9223372036854775807
  }
})");
  EXPECT_EQ(store.load(), whole);
}

TEST_F(LocalStoreTest, AbsentFieldsAreLeftOut) {
  ASSERT_TRUE(store.update(doNothing));
  EXPECT_EQ(fileContent(store.fileUrl()), "{}");
  EXPECT_EQ(store.load(), StoredState());
}

TEST_F(LocalStoreTest, AFileThatIsNotOursReadsAsEmptyAndIsLeftAlone) {
  for (const char* content :
       {"", "not JSON", "[]", "null", "{\"installId\": \"i\"", "{} {}", R"({"followedMatchId": 7})",
        R"({"installId": "i", "lastEventIdByMatch": {"a": 1.5}})",
        R"({"installId": "i", "lastEventIdByMatch": {"a": 9223372036854775808}})",
        R"({"installId": "i", "customisation": ["mi"]})",
        R"({"installId": "i", "customisation": {"theme": null}})", "{\"installId\": \"\xff\"}"}) {
    put(content);
    EXPECT_EQ(store.load(), StoredState()) << content;
    EXPECT_EQ(fileContent(store.fileUrl()), content);
  }
}

TEST_F(LocalStoreTest, AnUpdateReplacesAFileThatIsNotOurs) {
  put(R"({"followedMatchId": 7, "installId": "i"})");
  ASSERT_TRUE(
      store.update([](StoredState& state) { state.customisation = Texts{{"theme", "mi"}}; }));
  EXPECT_EQ(store.load(), (StoredState{.customisation = Texts{{"theme", "mi"}}}));
}

TEST_F(LocalStoreTest, ANullIsAnAbsentField) {
  put(R"({"followedMatchId": null, "installId": "i", "lastEventIdByMatch": null})");
  EXPECT_EQ(store.load(), StoredState{.installId = "i"});
}

TEST_F(LocalStoreTest, UnknownKeysAreReadOverAndGoWithTheNextSave) {
  put(R"({"installId": "i", "window": {"x": 1}})");
  EXPECT_EQ(store.load(), StoredState{.installId = "i"});
  ASSERT_TRUE(store.update(doNothing));
  EXPECT_EQ(fileContent(store.fileUrl()), "{\n  \"installId\": \"i\"\n}");
}

TEST_F(LocalStoreTest, ReadsTheFileAfreshEachTime) {
  put(R"({"followedMatchId": "a"})");
  EXPECT_EQ(store.followedMatchId(), "a");
  put(R"({"followedMatchId": "b", "installId": "i"})");
  EXPECT_EQ(store.followedMatchId(), "b");
  ASSERT_TRUE(store.setFollowedMatchId("c"));
  EXPECT_EQ(store.load(), (StoredState{.followedMatchId = "c", .installId = "i"}));
}

TEST_F(LocalStoreTest, FollowingNothingTakesTheKeyAwayAndKeepsTheOthers) {
  put(R"({"followedMatchId": "a", "installId": "i", "lastEventIdByMatch": {"a": 3}})");
  ASSERT_TRUE(store.setFollowedMatchId(std::nullopt));
  EXPECT_EQ(store.load(), (StoredState{.installId = "i", .lastEventIdByMatch = Ids{{"a", 3}}}));
  EXPECT_EQ(fileContent(store.fileUrl()).find("followedMatchId"), std::string::npos);
}

TEST_F(LocalStoreTest, TheInstallationIdIsMadeOnceAndKept) {
  put(R"({"followedMatchId": "a"})");
  const auto id = store.installId();
  EXPECT_THAT(id, MatchesRegex("[0-9a-f]+-[0-9a-f]+-4[0-9a-f]+-[0-9a-f]+-[0-9a-f]+"));
  EXPECT_EQ(id.size(), 36U);
  EXPECT_EQ(store.installId(), id);
  EXPECT_EQ(store.load(), (StoredState{.followedMatchId = "a", .installId = id}));
}

TEST_F(LocalStoreTest, AStoredInstallationIdIsGivenAsItIs) {
  put(R"({"installId": "MINE"})");
  EXPECT_EQ(store.installId(), "MINE");
}

TEST_F(LocalStoreTest, AnInstallationIdThatCannotBeKeptIsAnotherOneEachTime) {
  std::filesystem::create_directories(store.fileUrl());
  const auto first = store.installId();
  const auto second = store.installId();
  EXPECT_EQ(first.size(), 36U);
  EXPECT_EQ(second.size(), 36U);
  EXPECT_NE(first, second);
}

TEST_F(LocalStoreTest, KeepsTheCustomisationAsAWhole) {
  put(R"({"installId": "i", "customisation": {"theme": "mi", "old": "x"}})");
  const Customisation chosen("csk", AlertStyle::subtle);
  ASSERT_TRUE(store.setCustomisation(chosen));
  EXPECT_EQ(store.customisation(), chosen);
  EXPECT_EQ(store.load(),
            (StoredState{.installId = "i",
                         .customisation = Texts{{"theme", "csk"}, {"alertStyle", "subtle"}}}));
}

TEST_F(LocalStoreTest, AnAlertStyleInCapitalsReadsAsBig) {
  put(R"({"customisation": {"theme": "mi", "alertStyle": "SUBTLE"}})");
  EXPECT_EQ(store.customisation(), Customisation("mi", AlertStyle::big));
}

TEST_F(LocalStoreTest, LeavesNothingBesideTheFile) {
  for (int round = 0; round < 5; ++round) ASSERT_TRUE(store.update(doNothing));
  EXPECT_THAT(names(), ElementsAre("state.json"));
}

TEST_F(LocalStoreTest, AFolderThatCannotBeMadeIsNamedAsTheFailure) {
  writeFile(folder.path() / "data", "a file");
  const auto saved = store.setFollowedMatchId("a");
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.error().kind, StoreError::Kind::folder);
  EXPECT_EQ(saved.error().cause, std::errc::file_exists);
  EXPECT_EQ(store.load(), StoredState());
  EXPECT_FALSE(store.setCustomisation({}));
  EXPECT_FALSE(store.update(doNothing));
}

TEST_F(LocalStoreTest, AFileThatCannotBePutInPlaceLeavesNothingBeside) {
  std::filesystem::create_directories(store.fileUrl());
  const auto saved = store.setCustomisation({});
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.error().kind, StoreError::Kind::fileWriteUnknown);
  EXPECT_EQ(saved.error().cause, std::errc::is_a_directory);
  EXPECT_THAT(names(), ElementsAre("state.json"));
  EXPECT_EQ(store.load(), StoredState());
}

TEST_F(LocalStoreTest, ATextThatIsNoUnicodeFailsAndTheFileStays) {
  ASSERT_TRUE(store.setFollowedMatchId("a"));
  const auto saved = store.setFollowedMatchId("\xff");
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.error(), StoreError{.kind = StoreError::Kind::encoding});
  EXPECT_EQ(store.followedMatchId(), "a");
}

TEST_F(LocalStoreTest, APipeInTheFilesPlaceReadsAsEmptyAndIsReplaced) {
  std::filesystem::create_directories(store.directory());
  ASSERT_EQ(::mkfifo(store.fileUrl().c_str(), 0600), 0);
  EXPECT_EQ(store.load(), StoredState());
  ASSERT_TRUE(store.setFollowedMatchId("a"));
  EXPECT_EQ(store.followedMatchId(), "a");
}

TEST_F(LocalStoreTest, AFileFarTooLargeReadsAsEmpty) {
  constexpr std::size_t limit = std::size_t{16} * 1024 * 1024;
  std::string content = R"({"installId": "i"})";
  content.resize(limit, ' ');
  put(content);
  EXPECT_EQ(store.load().installId, "i");
  put(content + " ");
  EXPECT_EQ(store.load(), StoredState());
}

TEST_F(LocalStoreTest, ALinkInTheFilesPlaceIsReadThroughAndReplaced) {
  std::filesystem::create_directories(store.directory());
  writeFile(folder.path() / "elsewhere", R"({"installId": "i"})");
  std::filesystem::create_symlink(folder.path() / "elsewhere", store.fileUrl());
  EXPECT_EQ(store.installId(), "i");
  ASSERT_TRUE(store.setFollowedMatchId("a"));
  EXPECT_FALSE(std::filesystem::is_symlink(store.fileUrl()));
  EXPECT_EQ(fileContent(folder.path() / "elsewhere"), R"({"installId": "i"})");
}

TEST_F(LocalStoreTest, ACarefulUpdateLeavesAFileThatCannotBeRead) {
  const auto follow = [](StoredState& state) { state.followedMatchId = "a"; };
  for (const char* content : {"", "not JSON", R"({"installId": 1})"}) {
    put(content);
    const auto saved = store.updateReadable(follow);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), StoreError{.kind = StoreError::Kind::unreadable});
    EXPECT_EQ(fileContent(store.fileUrl()), content);
  }
  put(R"({"installId": "i"})");
  EXPECT_EQ(store.updateReadable(follow), (StoredState{.followedMatchId = "a", .installId = "i"}));
  std::filesystem::remove_all(store.directory());
  EXPECT_EQ(store.updateReadable(follow), StoredState{.followedMatchId = "a"});
  EXPECT_EQ(store.followedMatchId(), "a");
}

TEST_F(LocalStoreTest, ManyThreadsAtOnceLoseNothing) {
  constexpr int threadCount = 32;
  constexpr int updatesEach = 8;
  std::vector<std::string> installIds(threadCount);
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (int number = 0; number < threadCount; ++number) {
    threads.emplace_back([this, number, &installIds] {
      installIds[static_cast<std::size_t>(number)] = store.installId();
      for (int round = 0; round < updatesEach; ++round) {
        (void)store.update([&](StoredState& state) {
          if (!state.lastEventIdByMatch) state.lastEventIdByMatch.emplace();
          ++(*state.lastEventIdByMatch)["all"];
          ++(*state.lastEventIdByMatch)[std::to_string(number)];
        });
      }
    });
  }
  for (auto& thread : threads) thread.join();
  std::map<std::string, std::int64_t> expected{{"all", threadCount * updatesEach}};
  for (int number = 0; number < threadCount; ++number) {
    expected[std::to_string(number)] = updatesEach;
  }
  EXPECT_EQ(store.load().lastEventIdByMatch, expected);
  EXPECT_EQ(std::set(installIds.begin(), installIds.end()), std::set{*store.load().installId});
  EXPECT_THAT(names(), ElementsAre("state.json"));
}

// Saves records that tell whether they are whole: many entries, all of one number.
[[noreturn]] void saveForever(LocalStore& store) {
  while (true) {
    (void)store.update([](StoredState& state) {
      if (!state.lastEventIdByMatch) {
        state.lastEventIdByMatch.emplace();
        for (int entry = 0; entry < 500; ++entry) {
          state.lastEventIdByMatch->emplace(std::to_string(entry), 0);
        }
      }
      for (auto& entry : *state.lastEventIdByMatch) ++entry.second;
    });
  }
}

// The number of a whole record, which no later one falls below; else nothing.
std::optional<std::int64_t> numberOf(const StoredState& state) {
  std::set<std::int64_t> numbers;
  if (state.lastEventIdByMatch && state.lastEventIdByMatch->size() == 500) {
    for (const auto& [match, number] : *state.lastEventIdByMatch) numbers.insert(number);
  }
  return numbers.size() == 1 ? std::optional(*numbers.begin()) : std::nullopt;
}

// KESTROW_KILLS asks for another number of rounds.
int killingRounds() {
  const char* wanted = std::getenv("KESTROW_KILLS");
  return wanted != nullptr ? std::atoi(wanted) : 200;
}

TEST_F(LocalStoreTest, AKilledWriterLeavesAWholeFile) {
  std::minstd_rand random(1);
  std::int64_t latest = 0;
  const auto isWhole = [&] {
    const auto number = numberOf(store.load());
    return number && *number >= std::exchange(latest, number.value_or(0));
  };
  for (int round = 0; round < killingRounds(); ++round) {
    const auto writer = ::fork();
    if (writer == 0) saveForever(store);
    ASSERT_GT(writer, 0);
    while (!store.load().lastEventIdByMatch) std::this_thread::yield();
    for (auto reads = random() % 8; reads > 0; --reads) ASSERT_TRUE(isWhole());
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    ASSERT_TRUE(isWhole());
  }
}

TEST(LocalStore, LivesInAFolderOfItsOwnInTheUsersData) {
  const EnvironmentVariable home("HOME", "/home/u");
#ifdef __APPLE__
  EXPECT_EQ(LocalStore::defaultDirectory(), "/home/u/Library/Application Support/Kestrow");
#else
  const EnvironmentVariable data("XDG_DATA_HOME", std::nullopt);
  EXPECT_EQ(LocalStore::defaultDirectory(), "/home/u/.local/share/Kestrow");
#endif
}

}  // namespace
}  // namespace kestrow
