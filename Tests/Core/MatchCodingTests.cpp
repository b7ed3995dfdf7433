#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Support/RandomRecords.hpp"

#include <gtest/gtest.h>

#include <string>

namespace kestrow {
namespace {

const std::string teams =
    R"("team1":{"name":"Mumbai Indians","short":"MI"},"team2":{"name":"Chennai","short":"CSK"})";

// A match with these entries before the required ones (of a key that comes twice the first counts).
std::string matchBody(const std::string& entries = "") {
  return "{" + entries + (entries.empty() ? "" : ",") + R"("id":"7","league":"IPL",)" + teams +
         R"(,"state":"live","status":"MI need 5","innings":[]})";
}

std::string inningsBody(const std::string& entries) {
  return matchBody(R"("innings":[{"team":"MI","runs":1,"wickets":2,)" + entries + "}]");
}

std::string failureOfList(const std::string& match) {
  const auto response =
      json::decode<MatchesResponse>(R"({"live":[)" + matchBody() + "," + match + "]}");
  return response ? "decoded" : response.error().description();
}

Date date(std::string_view text) {
  return *parseInternetDate(text);
}

TEST(MatchCoding, ReadsEveryFieldOfAMatch) {
  const auto match = json::decode<Match>(
      R"({"id":"7","league":"IPL","team1":{"name":"Mumbai Indians","short":"MI"},
          "team2":{"name":"Chennai","short":"CSK"},"state":"innings break","status":"Break",
          "startTime":"2026-04-12T14:00:00Z","tournament":"T","teams":["MI","CSK"],
          "innings":[{"team":"MI","runs":145,"wickets":3,"overs":15.2},
                     {"team":"CSK","runs":0,"wickets":0,"overs":null}]})");
  ASSERT_TRUE(match.has_value()) << match.error().description();
  const Match expected{
      .id = "7",
      .league = "IPL",
      .team1 = {.name = "Mumbai Indians", .shortName = "MI"},
      .team2 = {.name = "Chennai", .shortName = "CSK"},
      .state = MatchPhase::inningsBreak,
      .status = "Break",
      .startTime = date("2026-04-12T14:00:00Z"),
      .innings = {{.team = "MI", .runs = 145, .wickets = 3, .overs = 15.2}, {.team = "CSK"}},
      .tournament = "T",
      .teams = {{"MI", "CSK"}}};
  EXPECT_EQ(*match, expected);
}

TEST(MatchCoding, ReadsAnEmptyObjectAsAListWithoutMatches) {
  EXPECT_EQ(json::decode<MatchesResponse>("{}"), MatchesResponse{});
  EXPECT_EQ(json::decode<MatchesResponse>(
                R"({"sample":null,"stale":null,"updatedAt":null,"live":null,"upcoming":null,
                    "finished":null})"),
            MatchesResponse{});
  EXPECT_EQ(json::decode<MatchResponse>("{}"), MatchResponse{});
  EXPECT_EQ(json::decode<MatchResponse>(R"({"sample":null,"stale":null,"match":null})"),
            MatchResponse{});
}

TEST(MatchCoding, ReadsEveryFieldOfTheAnswers) {
  const auto list = json::decode<MatchesResponse>(
      R"({"sample":true,"stale":true,"updatedAt":"2026-04-12T14:00:00.5Z","live":[)" +
      matchBody(R"("id":"1")") + R"(],"upcoming":[)" + matchBody(R"("id":"2")") +
      R"(],"finished":[)" + matchBody(R"("id":"3")") + "]}");
  ASSERT_TRUE(list.has_value());
  EXPECT_TRUE(list->sample);
  EXPECT_TRUE(list->stale);
  EXPECT_EQ(list->updatedAt, date("2026-04-12T14:00:00.5Z"));
  EXPECT_EQ(list->live.at(0).id, "1");
  EXPECT_EQ(list->upcoming.at(0).id, "2");
  EXPECT_EQ(list->finished.at(0).id, "3");

  const auto single = json::decode<MatchResponse>(
      R"({"sample":true,"stale":true,"updatedAt":"2026-04-12T14:00:00Z","match":)" + matchBody() +
      "}");
  ASSERT_TRUE(single.has_value());
  EXPECT_TRUE(single->sample);
  EXPECT_TRUE(single->stale);
  EXPECT_EQ(single->updatedAt, date("2026-04-12T14:00:00Z"));
  EXPECT_EQ(single->match->id, "7");
}

TEST(MatchCoding, KnowsFourPhasesByTheirExactText) {
  const auto phase = [](const std::string& text) {
    const auto match = json::decode<Match>(matchBody(R"("state":")" + text + '"'));
    return match ? std::optional(match->state) : std::nullopt;
  };
  EXPECT_EQ(phase("live"), MatchPhase::live);
  EXPECT_EQ(phase("innings break"), MatchPhase::inningsBreak);
  EXPECT_EQ(phase("not started"), MatchPhase::notStarted);
  EXPECT_EQ(phase("finished"), MatchPhase::finished);
  for (const auto* text : {"abandoned", "Live", "inningsBreak", "live ", ""}) {
    EXPECT_EQ(phase(text), std::nullopt) << text;
  }
}

TEST(MatchCoding, FailsTheWholeListForOneUnknownPhase) {
  EXPECT_EQ(failureOfList(matchBody(R"("state":"abandoned")")),
            R"(live[1].state: unknown match phase "abandoned")");
}

TEST(MatchCoding, TellsTheBadDateAsReceived) {
  EXPECT_EQ(failureOfList(matchBody(R"("startTime":"2026-04-12")")),
            "live[1].startTime: Bad date 2026-04-12");
  EXPECT_EQ(json::decode<MatchesResponse>(R"({"updatedAt":""})").error(),
            (json::Error{.path = "updatedAt", .reason = "Bad date "}));
  EXPECT_EQ(json::decode<MatchResponse>(R"({"updatedAt":1})").error().description(),
            "updatedAt: expected a text, found an integer");
}

TEST(MatchCoding, TakesDatesWithAndWithoutAFraction) {
  const auto start = [](const std::string& text) {
    return json::decode<Match>(matchBody(R"("startTime":")" + text + '"'))->startTime;
  };
  EXPECT_EQ(start("2026-04-12T14:00:00Z"), date("2026-04-12T14:00:00Z"));
  EXPECT_EQ(start("2026-04-12T14:00:00.123Z"),
            date("2026-04-12T14:00:00Z") + std::chrono::milliseconds(123));
}

TEST(MatchCoding, RequiresEveryFieldThatIsNotOptional) {
  for (const std::string_view key :
       {"id", "league", "team1", "team2", "state", "status", "innings"}) {
    auto body = matchBody();
    const auto name = "\"" + std::string(key) + "\"";
    body.replace(body.find(name), name.size(), "\"renamed\"");
    EXPECT_EQ(failureOfList(body), "live[1]." + std::string(key) + ": missing");
  }
  EXPECT_EQ(failureOfList(matchBody(R"("team1":{"name":"A"})")), "live[1].team1.short: missing");
  EXPECT_EQ(failureOfList(matchBody(R"("team2":{"short":"A"})")), "live[1].team2.name: missing");
  EXPECT_EQ(failureOfList(matchBody(R"("innings":[{"team":"A","runs":1}])")),
            "live[1].innings[0].wickets: missing");
  EXPECT_EQ(failureOfList(matchBody(R"("innings":[{"team":"A","wickets":1}])")),
            "live[1].innings[0].runs: missing");
  EXPECT_EQ(failureOfList(matchBody(R"("innings":[{"runs":1,"wickets":1}])")),
            "live[1].innings[0].team: missing");
  EXPECT_EQ(failureOfList(matchBody(R"("innings":null)")),
            "live[1].innings: expected a list, found null");
}

TEST(MatchCoding, RefusesOversWhoseBallsCanNotBeCounted) {
  EXPECT_EQ(failureOfList(inningsBody(R"("overs":1e300)")),
            "live[1].innings[0].overs: the balls in these overs can't be counted");
  EXPECT_EQ(failureOfList(inningsBody(R"("overs":1537228672809129472)")),
            "live[1].innings[0].overs: the balls in these overs can't be counted");
  EXPECT_EQ(failureOfList(inningsBody(R"("overs":18446744073709551616)")),
            "live[1].innings[0].overs: the balls in these overs can't be counted");
  EXPECT_EQ(failureOfList(inningsBody(R"("overs":1537228672809129216)")), "decoded");
  EXPECT_EQ(failureOfList(inningsBody(R"("overs":"12.3")")),
            "live[1].innings[0].overs: expected a number, found a text");
  EXPECT_EQ(json::decode<Match>(inningsBody(R"("overs":19.6)"))->innings[0].balls(), 120);
  EXPECT_EQ(json::decode<Match>(inningsBody(R"("overs":20)"))->innings[0].balls(), 120);
}

TEST(MatchCoding, RefusesIntegersBeyondSixtyFourBits) {
  EXPECT_EQ(failureOfList(matchBody(R"("innings":[{"runs":9223372036854775808}])")),
            "live[1].innings[0].runs: expected an integer of 64 bits, found a number");
  EXPECT_EQ(failureOfList(matchBody(R"("innings":[{"runs":18446744073709551616}])")),
            "live[1].innings[0].runs: expected an integer of 64 bits, found a number");
}

TEST(MatchCoding, SkipsUnknownIntegersOfAnyLength) {
  EXPECT_EQ(failureOfList(matchBody(R"("serial":123456789012345678901234567890)")), "decoded");
}

TEST(MatchCoding, LeavesOutWhatIsAbsent) {
  EXPECT_EQ(encode(MatchesResponse{}),
            R"({"sample":false,"stale":false,"live":[],"upcoming":[],"finished":[]})");
  EXPECT_EQ(encode(MatchResponse{}), R"({"sample":false,"stale":false})");
  EXPECT_EQ(encode(MatchResponse{.match = *json::decode<Match>(inningsBody(R"("overs":null)"))}),
            R"({"sample":false,"stale":false,"match":{"id":"7","league":"IPL",)" + teams +
                R"(,"state":"live","status":"MI need 5",)"
                R"("innings":[{"team":"MI","runs":1,"wickets":2}]}})");
}

TEST(MatchCoding, WritesBytesThatAreNotUtf8AsReplacementCharacters) {
  MatchResponse response{.match = *json::decode<Match>(matchBody())};
  response.match->status = "a\xff";
  EXPECT_EQ(json::decode<MatchResponse>(encode(response))->match->status, "a\ufffd");
}

TEST(MatchCoding, ReadsBackEveryRecordItWrites) {
  RandomRecords random(11);
  for (int count = 0; count < 300; ++count) {
    const auto list = random.matchesResponse();
    EXPECT_EQ(json::decode<MatchesResponse>(encode(list)), list) << encode(list);
    const auto single = random.matchResponse();
    EXPECT_EQ(json::decode<MatchResponse>(encode(single)), single) << encode(single);
    const auto team = random.team();
    EXPECT_EQ(json::decode<Team>(*json::encode(team)), team);
    const auto innings = random.innings();
    EXPECT_EQ(json::decode<Innings>(*json::encode(innings)), innings);
  }
}

}  // namespace
}  // namespace kestrow
