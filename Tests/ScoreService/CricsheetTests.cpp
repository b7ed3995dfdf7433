#include "ScoreService/Cricsheet.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace kestrow::service {
namespace {

std::string fixture(const std::string& name) {
  std::ifstream stream(KESTROW_FIXTURES "/cricsheet/" + name + ".json");
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

PlayedMatch read(const std::string& name) {
  auto match = readCricsheet(fixture(name));
  EXPECT_TRUE(match.has_value()) << match.error();
  return match.value_or(PlayedMatch{});
}

std::vector<Tally> tallies(const PlayedMatch& match) {
  std::vector<Tally> made;
  made.reserve(match.innings.size());
  for (const PlayedInnings& innings : match.innings) made.push_back(tally(innings));
  return made;
}

int boundaries(const PlayedInnings& innings, BoomKind kind) {
  int count = 0;
  for (const Ball& ball : innings.balls) count += ball.boundary == kind ? 1 : 0;
  return count;
}

// A whole file around an innings list and an outcome.
std::string file(const std::string& innings, const std::string& outcome = "{}",
                 const std::string& more = "") {
  return R"({"info":{"teams":["Aa Bb","Cc Dd"],"overs":20,"outcome":)" + outcome + more +
         R"(},"innings":)" + innings + "}";
}

std::string oneBall(const std::string& delivery) {
  return R"([{"team":"Aa Bb","overs":[{"over":0,"deliveries":[)" + delivery + "]}]}]";
}

std::string resultOf(const std::string& outcome) {
  const auto match = readCricsheet(file("[]", outcome));
  return match ? match->result : match.error();
}

std::string errorOf(const std::string& text) {
  const auto match = readCricsheet(text);
  return match ? "read" : match.error();
}

TEST(Cricsheet, AMatchWonByWickets) {
  const PlayedMatch match = read("won-by-wickets");
  EXPECT_EQ(match.league, "T20");
  EXPECT_EQ(match.tournament, "Coastal Cup");
  EXPECT_EQ(match.team1, (Team{"Harbour City Gulls", "HCG"}));
  EXPECT_EQ(match.team2, (Team{"Inland Kites", "IK"}));
  EXPECT_EQ(match.openingStatus, "Inland Kites won the toss and chose to field");
  EXPECT_EQ(match.result, "Inland Kites won by 7 wickets");
  EXPECT_EQ(tallies(match), (std::vector<Tally>{{46, 2, 24}, {47, 3, 18}}));
  EXPECT_EQ(match.innings[0].team, 0U);
  EXPECT_EQ(match.innings[1].team, 1U);
  EXPECT_EQ(match.innings[0].target, std::nullopt);
  EXPECT_EQ(match.innings[1].target, 47);
  EXPECT_EQ(match.innings[1].maxBalls, 24);
}

TEST(Cricsheet, ASuperOverIsAnotherInningsOfEachTeam) {
  const PlayedMatch match = read("tie-super-over");
  EXPECT_EQ(match.result, "Match tied (Harbour City Gulls won the Super Over)");
  EXPECT_EQ(tallies(match), (std::vector<Tally>{{29, 1, 12}, {29, 2, 12}, {11, 2, 5}, {12, 0, 3}}));
  EXPECT_FALSE(match.innings[1].isSuperOver);
  EXPECT_TRUE(match.innings[2].isSuperOver);
  EXPECT_EQ(match.innings[2].team, 1U);
  EXPECT_EQ(match.innings[2].target, std::nullopt);
  EXPECT_EQ(match.innings[3].team, 0U);
  EXPECT_EQ(match.innings[3].target, 12);
  EXPECT_EQ(match.innings[3].maxBalls, 6);
}

TEST(Cricsheet, ARevisedTargetComesWithItsOvers) {
  const PlayedMatch match = read("dls");
  EXPECT_EQ(match.result, "Harbour City Gulls won by 5 runs (D/L)");
  EXPECT_EQ(match.innings[0].maxBalls, 18);
  EXPECT_EQ(match.innings[1].target, 25);
  EXPECT_EQ(match.innings[1].maxBalls, 12);
}

TEST(Cricsheet, AMatchMayEndWithoutAResultOrWithoutABall) {
  const PlayedMatch unfinished = read("no-result");
  EXPECT_EQ(unfinished.result, "No result");
  EXPECT_EQ(tallies(unfinished), (std::vector<Tally>{{19, 1, 8}}));
  const PlayedMatch washedOut = read("without-a-ball");
  EXPECT_EQ(washedOut.result, "No result");
  EXPECT_TRUE(washedOut.innings.empty());
}

TEST(Cricsheet, OddBallsCountAsTheyDoInTheGame) {
  const PlayedMatch match = read("odd-balls");
  // Penalties before and after an innings belong to it.
  EXPECT_EQ(match.innings[0].runsBefore, 5);
  EXPECT_EQ(match.innings[1].runsAfter, 2);
  EXPECT_EQ(tallies(match), (std::vector<Tally>{{57, 2, 18}, {40, 3, 18}}));
  const auto& balls = match.innings[0].balls;
  // Four runs that were run, or a six by overthrows, are no boundary; nor are four byes.
  EXPECT_EQ(balls[0].runs, 4);
  EXPECT_EQ(balls[0].boundary, std::nullopt);
  EXPECT_EQ(balls[1].runs, 5);
  EXPECT_TRUE(balls[1].isLegal);
  EXPECT_EQ(balls[2].runs, 5);
  EXPECT_FALSE(balls[2].isLegal);
  EXPECT_EQ(balls[2].boundary, BoomKind::four);
  EXPECT_EQ(balls[3].boundary, std::nullopt);
  EXPECT_EQ(balls[4].boundary, std::nullopt);
  EXPECT_EQ(boundaries(match.innings[0], BoomKind::four), 3);
  EXPECT_EQ(boundaries(match.innings[0], BoomKind::six), 1);
}

TEST(Cricsheet, ARetirementIsAWicketOnlyWhenTheBatterIsOut) {
  const PlayedMatch match = read("odd-balls");
  std::vector<std::string> out;
  for (const Ball& ball : match.innings[0].balls) {
    out.insert(out.end(), ball.out.begin(), ball.out.end());
  }
  // A stumping off a wide and one who retired out; not the two who retired hurt or not out.
  EXPECT_EQ(out.size(), 2U);
  EXPECT_FALSE(match.innings[0].balls[10].isLegal);
  EXPECT_EQ(match.innings[0].balls[10].out.size(), 1U);
}

TEST(Cricsheet, TwoMayBeOutOnOneBall) {
  const auto match = readCricsheet(file(oneBall(
      R"({"batter":"X","runs":{"batter":0,"extras":0,"total":0},"wickets":[{"player_out":"X","kind":"retired out"},{"player_out":"Y","kind":"run out"}]})")));
  ASSERT_TRUE(match.has_value()) << match.error();
  EXPECT_EQ(match->innings[0].balls[0].out, (std::vector<std::string>{"X", "Y"}));
}

TEST(Cricsheet, ResultsAreWordedFromTheOutcome) {
  EXPECT_EQ(resultOf(R"({"winner":"Aa Bb","by":{"runs":1}})"), "Aa Bb won by 1 run");
  EXPECT_EQ(resultOf(R"({"winner":"Aa Bb","by":{"runs":12}})"), "Aa Bb won by 12 runs");
  EXPECT_EQ(resultOf(R"({"winner":"Aa Bb","by":{"wickets":1}})"), "Aa Bb won by 1 wicket");
  EXPECT_EQ(resultOf(R"({"winner":"Aa Bb","by":{"wickets":5},"method":"D/L"})"),
            "Aa Bb won by 5 wickets (D/L)");
  EXPECT_EQ(resultOf(R"({"winner":"Aa Bb","by":{"innings":1,"runs":46}})"),
            "Aa Bb won by an innings and 46 runs");
  EXPECT_EQ(resultOf(R"({"winner":"Aa Bb","method":"Awarded"})"), "Aa Bb won (Awarded)");
  EXPECT_EQ(resultOf(R"({"result":"tie"})"), "Match tied");
  EXPECT_EQ(resultOf(R"({"result":"tie","method":"D/L"})"), "Match tied (D/L)");
  EXPECT_EQ(resultOf(R"({"result":"tie","bowl_out":"Aa Bb"})"),
            "Match tied (Aa Bb won the bowl-out)");
  EXPECT_EQ(resultOf(R"({"result":"draw"})"), "Match drawn");
  EXPECT_EQ(resultOf(R"({"result":"no result"})"), "No result");
  EXPECT_EQ(resultOf("{}"), "No result");
}

TEST(Cricsheet, TheTossIsToldAsFarAsItIsKnown) {
  const auto opening = [](const std::string& toss) {
    return readCricsheet(file("[]", "{}", R"(,"toss":)" + toss))->openingStatus;
  };
  EXPECT_EQ(opening(R"({"winner":"Aa Bb","decision":"bat"})"),
            "Aa Bb won the toss and chose to bat");
  EXPECT_EQ(opening(R"({"winner":"Aa Bb","uncontested":true})"), "Aa Bb won the toss");
  EXPECT_EQ(opening("{}"), "Live");
}

TEST(Cricsheet, SaysWhereAFileIsWrong) {
  const std::string team = R"([{"team":"Ee"}])";
  EXPECT_EQ(errorOf(file(team)), "innings[0].team: not one of the two teams");
  EXPECT_EQ(errorOf(file(oneBall(R"({"batter":"X","runs":{"batter":0,"total":51}})"))),
            "innings[0].overs[0].deliveries[0].runs: not the runs of one ball");
  EXPECT_EQ(errorOf(file(oneBall(R"({"batter":"X","runs":{"batter":2,"total":1}})"))),
            "innings[0].overs[0].deliveries[0].runs: not the runs of one ball");
  EXPECT_EQ(errorOf(file(oneBall(R"({"batter":"X","runs":{"batter":0,"total":-1}})"))),
            "innings[0].overs[0].deliveries[0].runs: not the runs of one ball");
  EXPECT_EQ(errorOf(file(R"([{"team":"Aa Bb","penalty_runs":{"pre":51}}])")),
            "innings[0].penalty_runs: not between 0 and 50");
  EXPECT_EQ(errorOf(file("[]", "{}", R"(,"balls_per_over":0)")),
            "info.balls_per_over: not between 1 and 20");
  EXPECT_EQ(errorOf(R"({"info":{"teams":["A"]},"innings":[]})"), "info.teams: not two teams");
  EXPECT_EQ(errorOf(R"({"info":{"teams":["A","B"],"overs":0},"innings":[]})"),
            "info.overs: not between 1 and 1000");
  EXPECT_NE(
      errorOf(file(oneBall(R"({"batter":"X"})"))).find("innings[0].overs[0].deliveries[0].runs"),
      std::string::npos);
  EXPECT_NE(errorOf(R"({"info":{"teams":["A","B"]}})").find("innings"), std::string::npos);
}

TEST(Cricsheet, RefusesWhatIsNotAMatchFile) {
  for (const char* text : {"", "[]", "{}", "null", "not json", "{\"info\":"}) {
    EXPECT_FALSE(readCricsheet(text).has_value()) << text;
  }
}

}  // namespace
}  // namespace kestrow::service
