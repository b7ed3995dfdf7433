#include "KestrowCore/Match.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestrow {
namespace {

Innings innings(std::string team, std::int64_t runs, std::int64_t wickets,
                std::optional<double> overs) {
  return {.team = std::move(team), .runs = runs, .wickets = wickets, .overs = overs};
}

std::optional<std::int64_t> balls(std::optional<double> overs) {
  return innings("A", 0, 0, overs).balls();
}

Match matchWith(std::vector<Innings> played) {
  Match match;
  match.team1 = {.name = "Team A", .shortName = "A"};
  match.team2 = {.name = "Team B", .shortName = "B"};
  match.innings = std::move(played);
  return match;
}

Match matchCalled(std::string id, std::string league) {
  Match match;
  match.id = std::move(id);
  match.league = std::move(league);
  return match;
}

TEST(Innings, CountsItsBallsFromOversInCricketNotation) {
  EXPECT_EQ(balls(12.3), 75);
  EXPECT_EQ(balls(0.5), 5);
  EXPECT_EQ(balls(0.0), 0);
  EXPECT_EQ(balls(6.0), 36);
  EXPECT_EQ(balls(50.0), 300);
}

TEST(Innings, CountsASixthBallOfAnOverAsTheOverItCompletes) {
  EXPECT_EQ(balls(19.6), 120);
}

TEST(Innings, HasNoBallsWithoutOvers) {
  EXPECT_EQ(balls(std::nullopt), std::nullopt);
}

TEST(Innings, RoundsTheDecimalToTheNearestBall) {
  EXPECT_EQ(balls(1.14), 7);
  EXPECT_EQ(balls(1.16), 8);
  EXPECT_EQ(balls(1.25), 9);  // exactly half, away from zero
  EXPECT_EQ(balls(0.97), 10);
  EXPECT_EQ(balls(-0.5), -1);  // a whole of -1 and five balls
}

TEST(Innings, TrapsWhenTheBallsDoNotFit) {
  EXPECT_DEATH(balls(1e300), "");
  EXPECT_DEATH(balls(-1e300), "");
  EXPECT_DEATH(balls(std::numeric_limits<double>::quiet_NaN()), "");
}

TEST(Overs, AreCountableUpToWhatSixtyFourBitsHold) {
  constexpr double largest = 1537228672809129216.0;  // the last double below 2^63 / 6
  EXPECT_TRUE(areCountable(0));
  EXPECT_TRUE(areCountable(largest));
  EXPECT_EQ(balls(largest), 9223372036854775296);
  EXPECT_FALSE(areCountable(std::nextafter(largest, 1e300)));
  EXPECT_TRUE(areCountable(-largest));
  EXPECT_EQ(balls(-largest), -9223372036854775296);
  EXPECT_FALSE(areCountable(std::nextafter(-largest, -1e300)));
  for (const double overs :
       {1e300, -1e300, std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(areCountable(overs)) << overs;
  }
}

TEST(CurrentInnings, IsNothingBeforeTheFirst) {
  EXPECT_EQ(matchWith({}).currentInnings(), std::nullopt);
}

TEST(CurrentInnings, IsTheLatestOneWhileOnlyOneTeamHasBatted) {
  EXPECT_EQ(matchWith({innings("A", 9, 1, 2)}).currentInnings(), innings("A", 9, 1, 2));
  EXPECT_EQ(matchWith({innings("A", 9, 10, 2), innings("A", 5, 1, 1)}).currentInnings(),
            innings("A", 5, 1, 1));
  EXPECT_EQ(matchWith({innings("B", 9, 1, 2)}).currentInnings(), innings("B", 9, 1, 2));
}

TEST(CurrentInnings, IsTheLastEntryWhenATeamCodeMatchesNothing) {
  EXPECT_EQ(matchWith({innings("A", 9, 1, 2), innings("X", 5, 1, 1)}).currentInnings(),
            innings("X", 5, 1, 1));
  EXPECT_EQ(matchWith({innings("X", 9, 1, 2), innings("b", 5, 1, 1)}).currentInnings(),
            innings("b", 5, 1, 1));
}

TEST(CurrentInnings, IsTheChaseAfterASideIsAllOut) {
  const auto a = innings("A", 180, 10, 20);
  const auto b = innings("B", 50, 2, 6.0);
  EXPECT_EQ(matchWith({a, b}).currentInnings(), b);
  // The same when it was not the shorter innings, and for either team.
  const auto quickA = innings("A", 80, 10, 5);
  EXPECT_EQ(matchWith({quickA, b}).currentInnings(), b);
  const auto outB = innings("B", 50, 11, 3);
  EXPECT_EQ(matchWith({outB, innings("A", 20, 9, 4)}).currentInnings(), innings("A", 20, 9, 4));
}

TEST(CurrentInnings, ComparesBallsWhenBothSidesAreAllOut) {
  const auto a = innings("A", 180, 10, 20);
  const auto b = innings("B", 50, 10, 19.5);
  EXPECT_EQ(matchWith({a, b}).currentInnings(), b);
  EXPECT_EQ(matchWith({innings("A", 1, 10, 19), b}).currentInnings(), innings("A", 1, 10, 19));
}

TEST(CurrentInnings, IsTheOneWithFewerBalls) {
  const auto a = innings("A", 100, 9, 9.5);
  const auto b = innings("B", 100, 9, 10);
  EXPECT_EQ(matchWith({b, a}).currentInnings(), a);
  EXPECT_EQ(matchWith({innings("A", 100, 9, 10.1), b}).currentInnings(), b);
}

TEST(CurrentInnings, IsTheSecondTeamsOnATie) {
  const auto a = innings("A", 80, 3, 10);
  const auto b = innings("B", 60, 3, 10);
  EXPECT_EQ(matchWith({a, b}).currentInnings(), b);
  EXPECT_EQ(matchWith({b, a}).currentInnings(), b);
}

TEST(CurrentInnings, PrefersTheOneWhoseOversAreKnown) {
  const auto known = innings("A", 80, 3, 1);
  const auto unknown = innings("B", 60, 3, std::nullopt);
  EXPECT_EQ(matchWith({known, unknown}).currentInnings(), known);
  const auto unknownA = innings("A", 80, 3, std::nullopt);
  EXPECT_EQ(matchWith({unknownA, innings("B", 60, 3, 1)}).currentInnings(), innings("B", 60, 3, 1));
  EXPECT_EQ(matchWith({unknownA, unknown}).currentInnings(), unknown);
}

TEST(CurrentInnings, LooksAtEachTeamsLatestOnly) {
  const auto super = innings("A", 8, 0, 1);
  EXPECT_EQ(matchWith({innings("A", 162, 5, 20), innings("B", 162, 6, 20), innings("B", 8, 2, 0.4),
                       super})
                .currentInnings(),
            innings("B", 8, 2, 0.4));
}

TEST(MatchesResponse, FindsAMatchInLiveBeforeUpcomingBeforeFinished) {
  MatchesResponse response;
  response.live = {matchCalled("1", "live")};
  response.upcoming = {matchCalled("2", "upcoming")};
  response.finished = {matchCalled("1", "finished"), matchCalled("2", "finished"),
                       matchCalled("3", "finished"), matchCalled("3", "again")};
  EXPECT_EQ(response.match("1")->league, "live");
  EXPECT_EQ(response.match("2")->league, "upcoming");
  EXPECT_EQ(response.match("3")->league, "finished");
  EXPECT_EQ(response.match("4"), std::nullopt);
  EXPECT_EQ(response.match("1 "), std::nullopt);
}

}  // namespace
}  // namespace kestrow
