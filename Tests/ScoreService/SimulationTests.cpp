#include "ScoreService/ResultText.hpp"
#include "ScoreService/Simulation.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace kestrow::service {
namespace {

const Team mumbai{"Mumbai Indians", "MI"};
const Team chennai{"Chennai Super Kings", "CSK"};
constexpr std::uint64_t seedCount = 200;

template <class Check>
void forEachInnings(const Check& check) {
  for (std::uint64_t seed = 0; seed < seedCount; ++seed) {
    SCOPED_TRACE(seed);
    const PlayedMatch match = simulateMatch(seed, mumbai, chennai);
    for (const PlayedInnings& innings : match.innings) check(innings);
  }
}

bool isReached(const PlayedInnings& innings, std::int64_t runs) {
  return innings.target && runs >= *innings.target;
}

TEST(Simulation, TheSameSeedGivesTheSameMatchAndAnotherSeedAnother) {
  EXPECT_EQ(simulateMatch(7, mumbai, chennai), simulateMatch(7, mumbai, chennai));
  EXPECT_NE(simulateMatch(7, mumbai, chennai), simulateMatch(8, mumbai, chennai));
}

TEST(Simulation, AnInningsEndsWithItsWicketsItsBallsOrTheTargetAndNotBefore) {
  forEachInnings([](const PlayedInnings& innings) {
    const Tally whole = tally(innings);
    const std::int64_t maxWickets = innings.isSuperOver ? 2 : 10;
    EXPECT_EQ(innings.maxBalls, innings.isSuperOver ? 6 : 120);
    EXPECT_LE(whole.wickets, maxWickets);
    EXPECT_LE(whole.legalBalls, innings.maxBalls);
    EXPECT_TRUE(whole.wickets == maxWickets || whole.legalBalls == innings.maxBalls ||
                isReached(innings, whole.runs));
    // One ball earlier none of these held.
    PlayedInnings shorter = innings;
    shorter.balls.pop_back();
    const Tally before = tally(shorter);
    EXPECT_LT(before.wickets, maxWickets);
    EXPECT_LT(before.legalBalls, innings.maxBalls);
    EXPECT_FALSE(isReached(innings, before.runs));
  });
}

TEST(Simulation, AnOverHasSixLegalBallsByOneBowlerWhoBowlsNoMoreThanFourAndNeverTwoInARow) {
  forEachInnings([](const PlayedInnings& innings) {
    std::map<std::string, int> overs;
    std::string bowlerBefore;
    int legal = 0;
    bool isNewOver = true;
    for (std::size_t i = 0; i < innings.balls.size(); ++i) {
      const Ball& ball = innings.balls[i];
      if (isNewOver) {
        EXPECT_NE(ball.bowler, bowlerBefore);
        EXPECT_LE(++overs[ball.bowler], 4);
        bowlerBefore = ball.bowler;
        legal = 0;
      }
      EXPECT_EQ(ball.bowler, bowlerBefore);
      legal += ball.isLegal ? 1 : 0;
      const bool isLast = i + 1 == innings.balls.size();
      EXPECT_EQ(ball.endsOver, legal == 6 || isLast);
      isNewOver = ball.endsOver;
    }
  });
}

TEST(Simulation, WhoIsOutDoesNotBatAgain) {
  forEachInnings([](const PlayedInnings& innings) {
    std::set<std::string> out;
    for (const Ball& ball : innings.balls) {
      EXPECT_FALSE(out.contains(ball.batter));
      EXPECT_FALSE(out.contains(ball.partner));
      EXPECT_NE(ball.batter, ball.partner);
      out.insert(ball.out.begin(), ball.out.end());
    }
    EXPECT_EQ(static_cast<std::int64_t>(out.size()), tally(innings).wickets);
  });
}

TEST(Simulation, TheRunsOfABallFitWhatHappened) {
  forEachInnings([](const PlayedInnings& innings) {
    for (const Ball& ball : innings.balls) {
      const std::int64_t extra = ball.isLegal ? 0 : 1;
      if (ball.boundary == BoomKind::four) {
        EXPECT_EQ(ball.runs, 4 + extra);
      }
      if (ball.boundary == BoomKind::six) {
        EXPECT_EQ(ball.runs, 6 + extra);
      }
      EXPECT_GE(ball.runs, extra);
      EXPECT_LE(ball.runs, 7);
      if (!ball.out.empty()) {
        EXPECT_FALSE(ball.boundary.has_value());
      }
    }
  });
}

TEST(Simulation, TheChaseIsForOneMoreThanTheOtherSideMade) {
  for (std::uint64_t seed = 0; seed < seedCount; ++seed) {
    const PlayedMatch match = simulateMatch(seed, mumbai, chennai);
    ASSERT_GE(match.innings.size(), 2U);
    EXPECT_EQ(match.innings.size() % 2, 0U);
    for (std::size_t i = 0; i < match.innings.size(); i += 2) {
      EXPECT_FALSE(match.innings[i].target.has_value());
      EXPECT_EQ(match.innings[i + 1].target, tally(match.innings[i]).runs + 1);
      EXPECT_NE(match.innings[i + 1].team, match.innings[i].team);
      EXPECT_EQ(match.innings[i].isSuperOver, i > 0);
      // Whoever batted second bats first in the next pair.
      if (i > 0) {
        EXPECT_EQ(match.innings[i].team, match.innings[i - 1].team);
      }
    }
  }
}

TEST(Simulation, LooksLikeTheGame) {
  double runs = 0;
  double wickets = 0;
  double fours = 0;
  double sixes = 0;
  double illegal = 0;
  std::set<Slip> slips;
  std::set<std::string> endings;
  int superOvers = 0;
  for (std::uint64_t seed = 0; seed < seedCount; ++seed) {
    const PlayedMatch match = simulateMatch(seed, mumbai, chennai);
    runs += static_cast<double>(tally(match.innings[0]).runs);
    wickets += static_cast<double>(tally(match.innings[0]).wickets);
    for (const Ball& ball : match.innings[0].balls) {
      fours += ball.boundary == BoomKind::four ? 1 : 0;
      sixes += ball.boundary == BoomKind::six ? 1 : 0;
      illegal += ball.isLegal ? 0 : 1;
      slips.insert(ball.slip);
    }
    superOvers += match.innings.size() > 2 ? 1 : 0;
    for (const char* ending : {"wicket", "run", "tied"}) {
      if (match.result.find(ending) != std::string::npos) endings.insert(ending);
    }
  }
  constexpr auto count = static_cast<double>(seedCount);
  EXPECT_GT(runs / count, 140);
  EXPECT_LT(runs / count, 190);
  EXPECT_GT(wickets / count, 4.5);
  EXPECT_LT(wickets / count, 8);
  EXPECT_GT(fours / count, 10);
  EXPECT_LT(fours / count, 20);
  EXPECT_GT(sixes / count, 4);
  EXPECT_LT(sixes / count, 11);
  EXPECT_GT(illegal / count, 3);
  EXPECT_LT(illegal / count, 8);
  EXPECT_EQ(slips.size(), 6U);
  EXPECT_EQ(endings.size(), 3U);
  EXPECT_GT(superOvers, 0);
}

}  // namespace
}  // namespace kestrow::service
