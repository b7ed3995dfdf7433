#include "ScoreService/ResultText.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace kestrow::service {
namespace {

PlayedInnings innings(std::size_t team, std::int64_t runs, std::size_t wickets,
                      std::int64_t legalBalls) {
  PlayedInnings made{.team = team, .runsBefore = runs};
  for (std::int64_t i = 0; i < legalBalls; ++i) made.balls.emplace_back();
  for (std::size_t i = 0; i < wickets; ++i) made.balls[i].out = {"A"};
  return made;
}

PlayedMatch match(std::vector<PlayedInnings> played) {
  PlayedMatch made;
  made.team1 = {"Mumbai Indians", "MI"};
  made.team2 = {"Chennai Super Kings", "CSK"};
  made.innings = std::move(played);
  return made;
}

TEST(ResultText, AChaseIsWonByTheWicketsInHandAndTheBallsLeft) {
  EXPECT_EQ(resultText(match({innings(1, 150, 0, 120), innings(0, 151, 3, 117)})),
            "Mumbai Indians won by 7 wickets (with 3 balls left)");
  EXPECT_EQ(resultText(match({innings(0, 150, 0, 120), innings(1, 151, 9, 119)})),
            "Chennai Super Kings won by 1 wicket (with 1 ball left)");
}

TEST(ResultText, AChaseWonOffTheLastBallHasNoneLeft) {
  EXPECT_EQ(resultText(match({innings(1, 150, 0, 120), innings(0, 151, 8, 120)})),
            "Mumbai Indians won by 2 wickets");
}

TEST(ResultText, ADefendedTotalIsWonByTheRunsBetween) {
  EXPECT_EQ(resultText(match({innings(1, 150, 0, 120), innings(0, 138, 8, 120)})),
            "Chennai Super Kings won by 12 runs");
  EXPECT_EQ(resultText(match({innings(0, 150, 0, 120), innings(1, 149, 8, 120)})),
            "Mumbai Indians won by 1 run");
}

TEST(ResultText, ATieNamesWhoWonTheSuperOver) {
  const auto first = innings(0, 150, 0, 120);
  const auto second = innings(1, 150, 8, 120);
  EXPECT_EQ(resultText(match({first, second})), "Match tied");
  EXPECT_EQ(resultText(match({first, second, innings(1, 8, 1, 6), innings(0, 9, 0, 3)})),
            "Match tied (Mumbai Indians won the Super Over)");
  EXPECT_EQ(resultText(match({first, second, innings(1, 8, 1, 6), innings(0, 7, 0, 6)})),
            "Match tied (Chennai Super Kings won the Super Over)");
  EXPECT_EQ(resultText(match({first, second, innings(1, 8, 1, 6), innings(0, 8, 0, 6)})),
            "Match tied");
}

TEST(ResultText, OneInningsAloneIsNoResult) {
  EXPECT_EQ(resultText(match({innings(0, 150, 0, 120)})), "No result");
  EXPECT_EQ(resultText(match({})), "No result");
}

TEST(ResultText, AChaseTellsRunsAndBalls) {
  EXPECT_EQ(chaseText("Mumbai Indians", 45, 30), "Mumbai Indians need 45 runs in 30 balls");
  EXPECT_EQ(chaseText("Mumbai Indians", 1, 1), "Mumbai Indians need 1 run in 1 ball");
}

}  // namespace
}  // namespace kestrow::service
