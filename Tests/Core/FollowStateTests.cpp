#include "KestrowCore/FollowState.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>

#include <limits>

namespace kestrow {
namespace {

using records::match;
using std::chrono::minutes;

MatchesResponse mixedResponse() {
  return {.live = {match("a", MatchPhase::live), match("b", MatchPhase::inningsBreak)},
          .upcoming = {match("c", MatchPhase::notStarted)},
          .finished = {match("d", MatchPhase::finished), match("a", MatchPhase::finished)}};
}

FollowState following(const std::string& id) {
  FollowState state(id);
  state.apply(mixedResponse());
  return state;
}

TEST(FollowState, StartsWithNothingKnown) {
  const FollowState state("a");
  EXPECT_EQ(state.followedMatchId, "a");
  EXPECT_FALSE(state.lastResponse);
  EXPECT_FALSE(state.lastMatch);
  EXPECT_EQ(state.consecutiveFailures, 0);
  EXPECT_FALSE(state.isStale());
  EXPECT_FALSE(FollowState().followedMatchId);
}

TEST(FollowState, ShowsAMatchOfTheLastListAtOnceWhenItIsFollowed) {
  auto state = following("a");
  state.follow("c");
  EXPECT_EQ(state.followedMatchId, "c");
  EXPECT_EQ(state.lastMatch, match("c", MatchPhase::notStarted));
  state.follow("d");
  EXPECT_EQ(state.lastMatch, match("d", MatchPhase::finished));
}

TEST(FollowState, PrefersTheLiveEntryOfAMatchThatIsListedTwice) {
  EXPECT_EQ(following("a").lastMatch, match("a", MatchPhase::live));
}

TEST(FollowState, HasNoMatchWhileTheFollowedOneIsNotListed) {
  auto state = following("a");
  state.follow("elsewhere");
  EXPECT_FALSE(state.lastMatch);
  EXPECT_EQ(state.pollInterval(), minutes(5));
  state.apply(records::live({match("elsewhere")}));
  EXPECT_EQ(state.lastMatch, match("elsewhere"));
  EXPECT_EQ(state.pollInterval(), minutes(1));
  state.apply(mixedResponse());
  EXPECT_FALSE(state.lastMatch);
}

TEST(FollowState, HasNoMatchBeforeTheFirstAnswerOrWhenNothingIsFollowed) {
  FollowState state;
  state.follow("a");
  EXPECT_FALSE(state.lastMatch);
  state.apply(mixedResponse());
  EXPECT_TRUE(state.lastMatch);
  state.follow(std::nullopt);
  EXPECT_FALSE(state.followedMatchId);
  EXPECT_FALSE(state.lastMatch);
  state.apply(mixedResponse());
  EXPECT_FALSE(state.lastMatch);
}

TEST(FollowState, KeepsFailuresAndTheListWhenAnotherMatchIsFollowed) {
  auto state = following("a");
  state.recordFailure();
  state.follow("b");
  EXPECT_EQ(state.consecutiveFailures, 1);
  EXPECT_EQ(state.lastResponse, mixedResponse());
}

TEST(FollowState, FollowingTheSameMatchAgainChangesNothing) {
  auto state = following("a");
  state.lastMatch->status = "kept";
  const auto before = state;
  state.follow("a");
  EXPECT_EQ(state, before);
}

TEST(FollowState, CountsFailuresUntilAnAnswerComesAndKeepsWhatItKnew) {
  auto state = following("a");
  for (int miss = 1; miss <= 4; ++miss) {
    state.recordFailure();
    EXPECT_EQ(state.consecutiveFailures, miss);
  }
  EXPECT_EQ(state.lastMatch, match("a"));
  EXPECT_EQ(state.lastResponse, mixedResponse());
  state.apply(mixedResponse());
  EXPECT_EQ(state.consecutiveFailures, 0);
}

TEST(FollowState, IsStaleFromTheThirdFailureInARow) {
  auto state = following("a");
  state.recordFailure();
  state.recordFailure();
  EXPECT_FALSE(state.isStale());
  state.recordFailure();
  EXPECT_TRUE(state.isStale());
  state.apply(mixedResponse());
  EXPECT_FALSE(state.isStale());
}

TEST(FollowState, IsStaleWhenTheServiceSaysSo) {
  FollowState state;
  state.apply({.stale = true});
  EXPECT_TRUE(state.isStale());
  state.apply({.stale = false});
  EXPECT_FALSE(state.isStale());
}

TEST(FollowState, IsStaleWithoutAnyAnswerAfterThreeFailures) {
  FollowState state;
  EXPECT_FALSE(state.isStale());
  for (int miss = 0; miss < 3; ++miss) state.recordFailure();
  EXPECT_TRUE(state.isStale());
}

TEST(FollowState, AsksEveryMinuteInPlayAndEveryFiveMinutesOtherwise) {
  EXPECT_EQ(following("a").pollInterval(), Seconds(60));
  EXPECT_EQ(following("b").pollInterval(), Seconds(60));
  EXPECT_EQ(following("c").pollInterval(), Seconds(300));
  EXPECT_EQ(following("d").pollInterval(), Seconds(300));
  EXPECT_EQ(FollowState().pollInterval(), Seconds(300));
}

TEST(FollowStateDeathTest, TrapsWhenFailuresCanNoLongerBeCounted) {
  FollowState state;
  state.consecutiveFailures = std::numeric_limits<std::int64_t>::max() - 1;
  state.recordFailure();
  EXPECT_EQ(state.consecutiveFailures, std::numeric_limits<std::int64_t>::max());
  EXPECT_DEATH(state.recordFailure(), "");
}

}  // namespace
}  // namespace kestrow
