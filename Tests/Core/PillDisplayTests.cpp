#include "KestrowCore/FollowState.hpp"
#include "KestrowCore/PillDisplay.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace kestrow {
namespace {

using Kind = PillDisplay::Kind;
using Parts = FollowState::Parts;

std::string formatStart(Date date) {
  return "start " + std::to_string(date.time_since_epoch().count());
}

Match match(MatchPhase state) {
  Match result;
  result.id = "m1";
  result.team1 = {"Mumbai Indians", "MI"};
  result.team2 = {"Chennai Super Kings", "CSK"};
  result.state = state;
  return result;
}

Match withInnings(MatchPhase state, std::vector<Innings> innings) {
  Match result = match(state);
  result.innings = std::move(innings);
  return result;
}

Parts described(const Match& match) {
  return FollowState::describe(match, formatStart);
}

PillDisplay shown(const FollowState& state) {
  return state.pill(formatStart);
}

FollowState following(const Match& match) {
  FollowState state;
  state.followedMatchId = match.id;
  state.lastResponse = MatchesResponse();
  state.lastMatch = match;
  return state;
}

TEST(PillDescription, OfALiveMatchIsItsCurrentInnings) {
  EXPECT_EQ(described(withInnings(MatchPhase::live, {{"MI", 145, 3, 15.2}})),
            (Parts{Kind::live, "MI 145/3 (15.2)", "145/3", "15.2 ov", "MI"}));
  EXPECT_EQ(described(withInnings(MatchPhase::live, {{"MI", 145, 3, std::nullopt}})),
            (Parts{Kind::live, "MI 145/3", "145/3", std::nullopt, "MI"}));
}

TEST(PillDescription, OfAChaseIsTheChasingSide) {
  EXPECT_EQ(described(withInnings(MatchPhase::live, {{"MI", 180, 10, 20.0}, {"CSK", 50, 2, 6.0}})),
            (Parts{Kind::live, "CSK 50/2 (6.0)", "50/2", "6.0 ov", "CSK"}));
}

TEST(PillDescription, OfALiveMatchWithoutInningsSaysLive) {
  EXPECT_EQ(described(match(MatchPhase::live)),
            (Parts{Kind::live, "MI v CSK · Live", "Live", std::nullopt, std::nullopt}));
}

TEST(PillDescription, OfAnInningsBreak) {
  EXPECT_EQ(described(withInnings(MatchPhase::inningsBreak, {{"MI", 180, 7, 20.0}})),
            (Parts{Kind::inningsBreak, "MI 180/7 (20.0) · Innings break", "180/7", "Innings break",
                   "MI"}));
  EXPECT_EQ(described(match(MatchPhase::inningsBreak)),
            (Parts{Kind::inningsBreak, "MI v CSK · Innings break", "Innings break", std::nullopt,
                   std::nullopt}));
}

TEST(PillDescription, OfAMatchToComeIsItsStart) {
  Match next = match(MatchPhase::notStarted);
  EXPECT_EQ(described(next), (Parts{Kind::notStarted, "MI v CSK · Not started", "Not started",
                                    std::nullopt, std::nullopt}));
  next.startTime = Date(std::chrono::microseconds(42));
  EXPECT_EQ(described(next),
            (Parts{Kind::notStarted, "MI v CSK · start 42", "start 42", "Starts", std::nullopt}));
}

TEST(PillDescription, OfAFinishedMatchIsItsResult) {
  Match finished = match(MatchPhase::finished);
  finished.status = " \nMumbai Indians won by 7 wickets (with 3 balls left)\t";
  EXPECT_EQ(described(finished),
            (Parts{Kind::finished, "Mumbai Indians won by 7 wickets (with 3 balls left)",
                   "MI won by 7 wkts", std::nullopt, std::nullopt}));
}

TEST(PillDescription, OfAFinishedMatchWithoutAResultSaysFinished) {
  Match finished = match(MatchPhase::finished);
  const Parts expected{Kind::finished, "MI v CSK · Finished", "Finished", std::nullopt,
                       std::nullopt};
  EXPECT_EQ(described(finished), expected);
  finished.status = " \t\u00a0\n";
  EXPECT_EQ(described(finished), expected);
}

TEST(Pill, AsksForAMatchWhenNoneIsFollowed) {
  FollowState state = following(match(MatchPhase::live));
  state.followedMatchId.reset();
  state.lastResponse->sample = true;
  state.lastResponse->stale = true;
  PillDisplay expected;
  expected.kind = Kind::pickMatch;
  expected.text = expected.primary = "Pick a match";
  EXPECT_EQ(shown(state), expected);
}

TEST(Pill, LoadsUntilTheFirstFailure) {
  FollowState state;
  state.followedMatchId = "m1";
  PillDisplay expected;
  expected.kind = Kind::loading;
  expected.text = expected.primary = "Loading…";
  EXPECT_EQ(shown(state), expected);
  expected.kind = Kind::unavailable;
  expected.text = expected.primary = "Scores unavailable";
  for (const int failures : {1, 2, 3, 4}) {
    state.consecutiveFailures = failures;
    EXPECT_EQ(shown(state), expected);
  }
}

TEST(Pill, AsksForAMatchWhenTheFollowedOneIsNotListed) {
  FollowState state = following(match(MatchPhase::live));
  state.lastMatch.reset();
  state.lastResponse->sample = true;
  state.lastResponse->stale = true;
  state.consecutiveFailures = 5;
  PillDisplay expected;
  expected.kind = Kind::pickMatch;
  expected.text = expected.primary = "Pick a match";
  expected.isSample = true;
  EXPECT_EQ(shown(state), expected);
  state.lastResponse->sample = false;
  expected.isSample = false;
  EXPECT_EQ(shown(state), expected);
}

TEST(Pill, ShowsTheFollowedMatch) {
  PillDisplay expected;
  expected.kind = Kind::live;
  expected.text = "MI 145/3 (15.2)";
  expected.teams = "MI v CSK";
  expected.primary = "145/3";
  expected.secondary = "15.2 ov";
  expected.battingTeam = "MI";
  EXPECT_EQ(shown(following(withInnings(MatchPhase::live, {{"MI", 145, 3, 15.2}}))), expected);
}

TEST(Pill, SaysSampleInTheWholeLineOnly) {
  FollowState state = following(match(MatchPhase::live));
  state.lastResponse->sample = true;
  EXPECT_EQ(shown(state).text, "MI v CSK · Live · sample");
  EXPECT_EQ(shown(state).primary, "Live");
  EXPECT_TRUE(shown(state).isSample);
}

TEST(Pill, IsStaleAfterThreeMissesOrWhenTheServiceSaysSo) {
  FollowState state = following(match(MatchPhase::live));
  state.consecutiveFailures = 2;
  EXPECT_FALSE(shown(state).isStale);
  state.consecutiveFailures = 3;
  EXPECT_TRUE(shown(state).isStale);
  state.consecutiveFailures = 0;
  EXPECT_FALSE(shown(state).isStale);
  state.lastResponse->stale = true;
  EXPECT_TRUE(shown(state).isStale);
}

}  // namespace
}  // namespace kestrow
