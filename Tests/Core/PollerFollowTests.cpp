#include "KestrowCore/Poller.hpp"
#include "Tests/Core/PollerFixture.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace kestrow {
namespace {

using records::live;
using records::match;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PollerTest, FollowingShowsTheMatchAtOnceAndPolls) {
  poller->start();
  answer(0, live({match("a"), match("b")}));
  changes.clear();
  poller->follow("b");
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(changes[0].lastMatch, match("b"));
  EXPECT_EQ(requests.size(), 2U);
  EXPECT_THAT(waits.pending(), IsEmpty());
}

TEST_F(PollerTest, FollowingAMatchThatIsNotListedWaitsFiveMinutesUntilItIs) {
  poller->start();
  answer(0, live({match("a")}));
  poller->follow("b");
  EXPECT_FALSE(poller->state().lastMatch);
  answer(1, live({match("a")}));
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(300)));
  waits.endLast();
  answer(2, live({match("b")}));
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(60)));
}

TEST_F(PollerTest, FollowingWhileStoppedOrPausedDoesNotPoll) {
  poller->follow("a");
  EXPECT_THAT(requests, IsEmpty());
  EXPECT_EQ(changes.size(), 1U);
  poller->start();
  poller->pause();
  poller->follow("b");
  EXPECT_EQ(requests.size(), 1U);
  EXPECT_EQ(changes.size(), 2U);
}

TEST_F(PollerTest, TheFollowedMatchIsKeptInTheStore) {
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  make(&store);
  EXPECT_FALSE(poller->state().followedMatchId);
  poller->follow("a");
  EXPECT_EQ(store.followedMatchId(), "a");
  make(&store);
  EXPECT_EQ(poller->state(), FollowState("a"));
  poller->follow(std::nullopt);
  EXPECT_FALSE(store.followedMatchId());
}

TEST_F(PollerTest, FollowingTheSameMatchAgainStillSavesTellsAndPolls) {
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  make(&store);
  poller->start();
  poller->follow("a");
  std::filesystem::remove(store.fileUrl());
  changes.clear();
  poller->follow("a");
  EXPECT_EQ(store.followedMatchId(), "a");
  EXPECT_EQ(changes.size(), 1U);
  EXPECT_EQ(requests.size(), 3U);
}

TEST_F(PollerTest, FollowingKeepsWhatElseIsStoredAndReplacesAnUnreadableFile) {
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  make(&store);
  writeFile(store.fileUrl(), R"({"installId": "i", "followedMatchId": "old"})");
  poller->follow("a");
  EXPECT_EQ(store.load(), (StoredState{.followedMatchId = "a", .installId = "i"}));
  writeFile(store.fileUrl(), "not JSON");
  poller->follow("b");
  EXPECT_EQ(store.load(), StoredState{.followedMatchId = "b"});
}

TEST_F(PollerTest, AFailedSaveIsIgnored) {
  const TemporaryFolder folder;
  writeFile(folder.path() / "file", "");
  LocalStore store(folder.path() / "file" / "Kestrow");
  make(&store);
  poller->start();
  poller->follow("a");
  EXPECT_EQ(poller->state().followedMatchId, "a");
  EXPECT_EQ(changes.size(), 1U);
  EXPECT_EQ(requests.size(), 2U);
}

}  // namespace
}  // namespace kestrow
