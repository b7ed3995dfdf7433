#include "ScoreService/MatchScript.hpp"
#include "ScoreService/Simulation.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace kestrow::service {
namespace {

// A match of one-over innings that a test can follow with a finger.
PlayedMatch shortMatch() {
  PlayedMatch match;
  match.team1 = {"Mumbai Indians", "MI"};
  match.team2 = {"Chennai Super Kings", "CSK"};
  match.openingStatus = "Toss";
  match.result = "Result";
  PlayedInnings first{.team = 1, .maxBalls = 6};
  first.balls = {
      {.batter = "A", .partner = "B", .runs = 4, .boundary = BoomKind::four},
      {.batter = "A", .partner = "B", .runs = 1, .isLegal = false},
      {.batter = "A", .partner = "B", .out = {"A"}},
      {.batter = "C", .partner = "B", .runs = 6, .endsOver = true, .boundary = BoomKind::six}};
  PlayedInnings second{.team = 0, .target = 12, .maxBalls = 6};
  second.balls = {{.batter = "D", .partner = "E", .runs = 2, .endsOver = true}};
  match.innings = {first, second};
  return match;
}

PlayedMatch withSlip(Slip slip) {
  PlayedMatch match = shortMatch();
  for (Ball& ball : match.innings[0].balls) {
    if (ball.boundary == BoomKind::four) ball.slip = slip;
  }
  return match;
}

struct Line {
  std::int64_t id;
  BoomKind kind;
  std::string batter;
  std::string field;
  bool late;
  double published;
  bool operator==(const Line&) const = default;
};

void PrintTo(const Line& line, std::ostream* out) {
  *out << line.id << " kind " << static_cast<int>(line.kind) << " " << line.batter << " "
       << line.field << (line.late ? " late" : "") << " at " << line.published;
}

std::vector<Line> lines(const PlayedMatch& match) {
  std::vector<Line> made;
  const MatchScript script(match);
  for (const ScriptedEvent& scripted : script.events()) {
    const BoomEvent& event = scripted.event;
    made.push_back({event.id, event.kind, event.batter.value_or(""), event.field.value_or(""),
                    event.late, scripted.published.count()});
  }
  return made;
}

TEST(MatchScript, TellsTheScoreAfterEachBall) {
  const MatchScript script(shortMatch());
  const auto innings = [&](double time) { return script.standAt(Seconds(time)).innings; };
  EXPECT_EQ(innings(0), (std::vector<Innings>{{"CSK", 0, 0, 0.0}}));
  EXPECT_EQ(innings(39.9), (std::vector<Innings>{{"CSK", 0, 0, 0.0}}));
  EXPECT_EQ(innings(40), (std::vector<Innings>{{"CSK", 4, 0, 0.1}}));
  EXPECT_EQ(innings(80), (std::vector<Innings>{{"CSK", 5, 0, 0.1}}));
  EXPECT_EQ(innings(120), (std::vector<Innings>{{"CSK", 5, 1, 0.2}}));
  // A wicket takes a minute more.
  EXPECT_EQ(innings(219.9), (std::vector<Innings>{{"CSK", 5, 1, 0.2}}));
  EXPECT_EQ(innings(220), (std::vector<Innings>{{"CSK", 11, 1, 0.3}}));
  EXPECT_EQ(innings(1420), (std::vector<Innings>{{"CSK", 11, 1, 0.3}, {"MI", 0, 0, 0.0}}));
  EXPECT_EQ(innings(1460), (std::vector<Innings>{{"CSK", 11, 1, 0.3}, {"MI", 2, 0, 0.1}}));
}

TEST(MatchScript, GoesThroughItsPhases) {
  const MatchScript script(shortMatch());
  const auto stand = [&](double time) {
    const MatchStand at = script.standAt(Seconds(time));
    return std::pair(at.phase, at.status);
  };
  EXPECT_EQ(stand(-0.001), std::pair(MatchPhase::notStarted, std::string("Match not started")));
  EXPECT_EQ(stand(0), std::pair(MatchPhase::live, std::string("Toss")));
  EXPECT_EQ(stand(219.9), std::pair(MatchPhase::live, std::string("Toss")));
  EXPECT_EQ(stand(220), std::pair(MatchPhase::inningsBreak, std::string("Innings break")));
  EXPECT_EQ(stand(1419.9).first, MatchPhase::inningsBreak);
  EXPECT_EQ(stand(1420),
            std::pair(MatchPhase::live, std::string("Mumbai Indians need 12 runs in 6 balls")));
  EXPECT_EQ(stand(1459.9).first, MatchPhase::live);
  EXPECT_EQ(stand(1460), std::pair(MatchPhase::finished, std::string("Result")));
  EXPECT_EQ(stand(1e9), std::pair(MatchPhase::finished, std::string("Result")));
  EXPECT_EQ(script.end(), Seconds(1460));
}

TEST(MatchScript, ASuperOverComesSoonerAndSaysWhatItIs) {
  PlayedMatch match = shortMatch();
  match.innings.push_back({.team = 0, .isSuperOver = true, .maxBalls = 6, .balls = {{.runs = 3}}});
  match.innings.push_back(
      {.team = 1, .isSuperOver = true, .target = 4, .maxBalls = 6, .balls = {{.runs = 1}, {}}});
  const MatchScript script(match);
  const auto status = [&](double time) { return script.standAt(Seconds(time)).status; };
  EXPECT_EQ(status(1460), "Scores level, Super Over next");
  EXPECT_EQ(script.standAt(Seconds(1460)).phase, MatchPhase::inningsBreak);
  EXPECT_EQ(script.standAt(Seconds(1759.9)).phase, MatchPhase::inningsBreak);
  EXPECT_EQ(script.standAt(Seconds(1760)).phase, MatchPhase::live);
  EXPECT_EQ(status(1760), "Super Over");
  EXPECT_EQ(script.standAt(Seconds(2099.9)).phase, MatchPhase::inningsBreak);
  EXPECT_EQ(script.standAt(Seconds(2100)).phase, MatchPhase::live);
  EXPECT_EQ(status(2140), "Super Over: Chennai Super Kings need 3 runs in 5 balls");
  const auto innings = script.standAt(Seconds(2200)).innings;
  EXPECT_EQ(innings.size(), 4U);
  EXPECT_EQ(innings.back(), (Innings{"CSK", 1, 0, 0.2}));
}

TEST(MatchScript, PenaltiesCountBeforeTheFirstAndAfterTheLastBall) {
  PlayedMatch match = shortMatch();
  match.innings[0].runsBefore = 5;
  match.innings[0].runsAfter = 7;
  const MatchScript script(match);
  EXPECT_EQ(script.standAt(Seconds(0)).innings[0].runs, 5);
  EXPECT_EQ(script.standAt(Seconds(219.9)).innings[0].runs, 10);
  EXPECT_EQ(script.standAt(Seconds(220)).innings[0].runs, 23);
}

TEST(MatchScript, AMatchWithoutABallIsOverSoon) {
  PlayedMatch match;
  match.result = "No result";
  const MatchScript script(match);
  EXPECT_EQ(script.standAt(Seconds(59)).phase, MatchPhase::live);
  EXPECT_EQ(script.standAt(Seconds(60)).phase, MatchPhase::finished);
  EXPECT_TRUE(script.standAt(Seconds(60)).innings.empty());
}

TEST(MatchScript, ReportsFoursSixesAndWicketsAsTheyHappen) {
  EXPECT_EQ(lines(shortMatch()), (std::vector<Line>{{1, BoomKind::four, "A", "", false, 40},
                                                    {2, BoomKind::wicket, "A", "", false, 120},
                                                    {3, BoomKind::six, "C", "", false, 220}}));
}

TEST(MatchScript, ALateReportComesAfterwardsAndSaysSo) {
  const MatchScript script(withSlip(Slip::late));
  EXPECT_EQ(lines(withSlip(Slip::late)),
            (std::vector<Line>{{1, BoomKind::wicket, "A", "", false, 120},
                               {2, BoomKind::four, "A", "", true, 140},
                               {3, BoomKind::six, "C", "", false, 220}}));
  EXPECT_EQ(script.events()[1].happened, Seconds(40));
}

TEST(MatchScript, AWrongBatterIsRevisedUnderTheSameId) {
  const MatchScript script(withSlip(Slip::wrongBatter));
  const ScriptedEvent& event = script.events().front();
  EXPECT_EQ(event.event.batter, "B");
  EXPECT_EQ(event.revisedBatter, "A");
  EXPECT_EQ(event.revised, Seconds(140));
  EXPECT_EQ(script.events().size(), 3U);
}

TEST(MatchScript, ASixThatWasAFourIsCorrectedAndTheFourFollowsLate) {
  EXPECT_EQ(lines(withSlip(Slip::calledSix)),
            (std::vector<Line>{{1, BoomKind::six, "A", "", false, 40},
                               {2, BoomKind::wicket, "A", "", false, 120},
                               {3, BoomKind::correction, "A", "sixes", false, 140},
                               {4, BoomKind::four, "A", "", true, 140},
                               {5, BoomKind::six, "C", "", false, 220}}));
}

TEST(MatchScript, WhatWasNoFourOrWicketIsCorrected) {
  for (const auto& [slip, kind, field] :
       {std::tuple(Slip::calledFour, BoomKind::four, "fours"),
        std::tuple(Slip::calledWicket, BoomKind::wicket, "wickets")}) {
    PlayedMatch match = shortMatch();
    match.innings[1].balls[0].slip = slip;
    const auto all = lines(match);
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all[3], (Line{4, kind, "D", "", false, 1460}));
    EXPECT_EQ(all[4], (Line{5, BoomKind::correction, "D", field, false, 1560}));
    // The score never counted it.
    EXPECT_EQ(MatchScript(match).standAt(Seconds(1460)).innings[1], (Innings{"MI", 2, 0, 0.1}));
  }
}

TEST(MatchScript, IdsLeaveGapsAtTheEndOfOversWhenTheMatchAsksForThem) {
  PlayedMatch match = shortMatch();
  match.idGapPerOver = 10;
  match.innings[1].balls[0].milestone = "D";
  const auto all = lines(match);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(all[2].id, 3);
  EXPECT_EQ(all[3], (Line{14, BoomKind::other, "D", "", false, 1460}));
}

TEST(MatchScript, OfEverySimulatedMatchScoresOnlyGrowIdsRiseAndEveryPhaseComes) {
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    const MatchScript script(
        MatchScript(simulateMatch(seed, {"Mumbai Indians", "MI"}, {"Chennai Super Kings", "CSK"})));
    std::set<MatchPhase> phases;
    std::vector<Innings> before;
    for (Seconds time{-60}; time <= script.end(); time += Seconds(20)) {
      const MatchStand stand = script.standAt(time);
      phases.insert(stand.phase);
      ASSERT_GE(stand.innings.size(), before.size());
      for (std::size_t i = 0; i < before.size(); ++i) {
        ASSERT_GE(stand.innings[i].runs, before[i].runs);
        ASSERT_GE(stand.innings[i].wickets, before[i].wickets);
        ASSERT_GE(stand.innings[i].overs, before[i].overs);
        ASSERT_LE(stand.innings[i].wickets, 10);
        ASSERT_LE(stand.innings[i].overs, 20.0);
      }
      before = stand.innings;
    }
    phases.insert(script.standAt(script.end()).phase);
    EXPECT_EQ(phases.size(), 4U);
    for (std::size_t i = 1; i < script.events().size(); ++i) {
      ASSERT_GT(script.events()[i].event.id, script.events()[i - 1].event.id);
      ASSERT_GE(script.events()[i].published, script.events()[i - 1].published);
    }
  }
}

TEST(MatchScript, OfEverySimulatedMatchTheEventsLessTheirCorrectionsAreTheScorecards) {
  for (std::uint64_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    const MatchScript script(
        simulateMatch(seed, {"Mumbai Indians", "MI"}, {"Chennai Super Kings", "CSK"}));
    std::map<std::string, int> reported;
    for (const ScriptedEvent& scripted : script.events()) {
      const BoomEvent& event = scripted.event;
      if (event.kind == BoomKind::four) ++reported["fours"];
      if (event.kind == BoomKind::six) ++reported["sixes"];
      if (event.kind == BoomKind::wicket) ++reported["wickets"];
      if (event.kind == BoomKind::correction) --reported[event.field.value_or("")];
    }
    std::map<std::string, int> played;
    for (const PlayedInnings& innings : script.match().innings) {
      for (const Ball& ball : innings.balls) {
        if (ball.boundary == BoomKind::four) ++played["fours"];
        if (ball.boundary == BoomKind::six) ++played["sixes"];
        played["wickets"] += static_cast<int>(ball.out.size());
      }
    }
    EXPECT_EQ(reported, played);
  }
}

TEST(MatchScript, OversTravelInCricketNotation) {
  EXPECT_EQ(oversFromBalls(0), 0.0);
  EXPECT_EQ(oversFromBalls(5), 0.5);
  EXPECT_EQ(oversFromBalls(6), 1.0);
  EXPECT_EQ(oversFromBalls(75), 12.3);
  EXPECT_EQ(oversFromBalls(119), 19.5);
  EXPECT_EQ(oversFromBalls(120), 20.0);
}

}  // namespace
}  // namespace kestrow::service
