#include "ScoreService/Feeds.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace kestrow::service {
namespace {

using namespace std::chrono_literals;

const Date origin = *parseInternetDate("2026-04-12T14:20:00Z");
const std::string fixtures = KESTROW_FIXTURES "/cricsheet/";

FeedOptions from(const char* start, double speed = 1) {
  return {.flags = {}, .start = *parseStartPoint(start), .speed = speed};
}

Date after(Seconds time) {
  return laterBy(origin, time);
}

std::vector<std::string> ids(const std::vector<Match>& matches) {
  std::vector<std::string> made;
  made.reserve(matches.size());
  for (const Match& match : matches) made.push_back(match.id);
  return made;
}

TEST(SimulatedFeed, HasLiveUpcomingAndFinishedMatches) {
  const MatchesResponse list = simulatedFeed(1, from("8"), origin).matches(origin);
  EXPECT_FALSE(list.sample);
  EXPECT_FALSE(list.stale);
  EXPECT_EQ(list.updatedAt, origin);
  EXPECT_EQ(ids(list.live), (std::vector<std::string>{"match-1", "match-2", "match-3"}));
  EXPECT_EQ(list.live[0].state, MatchPhase::live);
  EXPECT_EQ(list.live[0].innings.at(0).overs, 8.0);
  EXPECT_EQ(list.live[1].state, MatchPhase::live);
  EXPECT_EQ(list.live[1].innings.size(), 2U);
  EXPECT_EQ(list.live[2].state, MatchPhase::inningsBreak);
  EXPECT_EQ(list.upcoming.size(), 8U);
  EXPECT_EQ(list.finished.size(), 2U);
  for (const Match& match : list.finished) EXPECT_NE(match.status.find("won"), std::string::npos);
}

TEST(SimulatedFeed, SomeUpcomingMatchesHaveAStartTimeInTheNextTenDaysAndSomeHaveNone) {
  const MatchesResponse list = simulatedFeed(1, from("8"), origin).matches(origin);
  std::size_t announced = 0;
  for (const Match& match : list.upcoming) {
    EXPECT_EQ(match.state, MatchPhase::notStarted);
    EXPECT_TRUE(match.innings.empty());
    if (!match.startTime) continue;
    ++announced;
    EXPECT_GT(*match.startTime, origin);
    EXPECT_LT(*match.startTime, origin + std::chrono::days(10));
  }
  EXPECT_EQ(announced, 5U);
}

TEST(SimulatedFeed, TheSameSeedGivesTheSameAnswersAndAnotherSeedOthersUnderTheSameIds) {
  const auto list = [](std::uint64_t seed) {
    return simulatedFeed(seed, from("8"), origin).matches(origin + 1h);
  };
  EXPECT_EQ(list(5), list(5));
  EXPECT_NE(list(5).live[0].innings, list(6).live[0].innings);
  EXPECT_EQ(ids(list(5).upcoming), ids(list(6).upcoming));
}

TEST(SimulatedFeed, NobodyPlaysAgainstThemselvesAndTheFirstRoundHasEveryone) {
  const MatchFeed feed = simulatedFeed(9, from("8"), origin);
  std::set<std::string> firstRound;
  for (std::size_t i = 0; i < feed.all().size(); ++i) {
    const PlayedMatch& match = feed.all()[i].script.match();
    EXPECT_NE(match.team1, match.team2);
    if (i < 5) firstRound.insert({match.team1.shortName, match.team2.shortName});
  }
  EXPECT_EQ(firstRound.size(), 10U);
}

TEST(SimulatedFeed, SpeedAndStartPointAreTheFeaturedMatchs) {
  const MatchFeed feed = simulatedFeed(1, from("before", 60), origin);
  EXPECT_EQ(feed.matches(origin).upcoming.at(0).id, featuredMatchId);
  EXPECT_EQ(feed.matches(origin).upcoming.at(0).startTime, origin + 10s);
  EXPECT_EQ(feed.matches(after(Seconds(9.9))).match(featuredMatchId)->state,
            MatchPhase::notStarted);
  EXPECT_EQ(feed.matches(after(Seconds(10))).match(featuredMatchId)->state, MatchPhase::live);
  // Six and a half hours of the match later the others have gone on by as many minutes.
  const auto later = feed.matches(origin + 400s);
  EXPECT_EQ(later.match(featuredMatchId)->state, MatchPhase::finished);
  EXPECT_EQ(later.match("match-3")->state, MatchPhase::inningsBreak);
}

TEST(SimulatedFeed, EveryStateOfTheFeaturedMatchAppearsInOrder) {
  const MatchFeed feed = simulatedFeed(2, from("before"), origin);
  std::vector<MatchPhase> phases;
  for (auto time = 0s; time < 8h; time += 60s) {
    const MatchPhase phase = feed.match(featuredMatchId, origin + time).match->state;
    if (phases.empty() || phases.back() != phase) phases.push_back(phase);
  }
  EXPECT_EQ(phases, (std::vector<MatchPhase>{MatchPhase::notStarted, MatchPhase::live,
                                             MatchPhase::inningsBreak, MatchPhase::live,
                                             MatchPhase::finished}));
}

TEST(SimulatedFeed, UpcomingMatchesAreNotStartedUntilTheirTimeHasCome) {
  const MatchFeed feed = simulatedFeed(1, from("8"), origin);
  const Date start = *feed.match("match-4", origin).match->startTime;
  EXPECT_EQ(feed.match("match-4", start - 1us).match->state, MatchPhase::notStarted);
  EXPECT_EQ(feed.match("match-4", start).match->state, MatchPhase::live);
}

TEST(MatchFeed, MarksItsListsAsAsked) {
  FeedOptions options = from("8");
  options.flags = {.sample = true, .stale = false};
  EXPECT_TRUE(simulatedFeed(1, options, origin).matches(origin).sample);
  EXPECT_FALSE(simulatedFeed(1, options, origin).matches(origin).stale);
  EXPECT_TRUE(simulatedFeed(1, options, origin).match("match-1", origin).sample);
  options.flags = {.sample = false, .stale = true};
  EXPECT_TRUE(simulatedFeed(1, options, origin).matches(origin).stale);
  EXPECT_TRUE(simulatedFeed(1, options, origin).match("match-1", origin).stale);
}

TEST(MatchFeed, AnUnknownMatchIsAbsent) {
  const MatchFeed feed = simulatedFeed(1, from("8"), origin);
  EXPECT_EQ(feed.match("match-99", origin).match, std::nullopt);
  EXPECT_EQ(feed.match("match-99", origin).updatedAt, origin);
  EXPECT_EQ(feed.keyEvents("match-99", std::nullopt, origin), std::nullopt);
}

TEST(MatchFeed, TheListTheMatchAndTheKeyEventsAgree) {
  const MatchFeed feed = simulatedFeed(4, from("0"), origin);
  for (auto time = 0s; time < 5h; time += 300s) {
    const Date now = origin + time;
    const auto listed = feed.matches(now).match(featuredMatchId);
    EXPECT_EQ(feed.match(featuredMatchId, now).match, listed);
    EXPECT_EQ(feed.keyEvents(featuredMatchId, std::nullopt, now)->match, *listed);
  }
}

TEST(MatchFeed, KeyEventsAreThoseAboveSince) {
  const MatchFeed feed = simulatedFeed(4, from("result"), origin);
  const auto all = feed.keyEvents(featuredMatchId, std::nullopt, origin + 1h);
  ASSERT_TRUE(all.has_value());
  ASSERT_GT(all->events.size(), 20U);
  EXPECT_EQ(all->events, all->keyMoments);
  EXPECT_EQ(all->newestEventId, all->events.back().id);
  const std::int64_t since = all->events[10].id;
  const auto newer = feed.keyEvents(featuredMatchId, since, origin + 1h);
  EXPECT_EQ(newer->events, std::vector(all->events.begin() + 11, all->events.end()));
  EXPECT_EQ(newer->keyMoments, all->keyMoments);
  EXPECT_EQ(newer->newestEventId, all->newestEventId);
  EXPECT_TRUE(feed.keyEvents(featuredMatchId, all->newestEventId, origin + 1h)->events.empty());
  EXPECT_EQ(feed.keyEvents(featuredMatchId, -1, origin + 1h)->events.size(), all->events.size());
}

TEST(MatchFeed, BeforeTheFirstEventTheNewestIdIsZero) {
  const auto payload =
      simulatedFeed(4, from("before"), origin).keyEvents(featuredMatchId, std::nullopt, origin);
  EXPECT_EQ(payload->newestEventId, 0);
  EXPECT_TRUE(payload->events.empty());
  EXPECT_TRUE(payload->keyMoments.empty());
}

TEST(MatchFeed, AnEventIsDatedByWhenItHappenedAtTheMatchsSpeed) {
  const MatchFeed feed = simulatedFeed(4, from("0", 100), origin);
  const FeedMatch& match = feed.all().front();
  const auto payload = feed.keyEvents(featuredMatchId, std::nullopt, origin + 1h);
  for (std::size_t i = 0; i < payload->events.size(); ++i) {
    const auto expected = laterBy(origin, match.script.events()[i].happened / 100);
    EXPECT_EQ(payload->events[i].at, toMilliseconds(expected));
  }
}

TEST(MatchFeed, AnEventMayBeRevisedUnderItsId) {
  // Some seed has a revision; what matters is that it appears once its time has come.
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    const MatchFeed feed = simulatedFeed(seed, from("0"), origin);
    for (const ScriptedEvent& scripted : feed.all().front().script.events()) {
      if (!scripted.revisedBatter) continue;
      const auto batterAt = [&](Seconds time) {
        const auto moments = feed.keyEvents(featuredMatchId, std::nullopt, after(time))->keyMoments;
        return std::ranges::find(moments, scripted.event.id, &BoomEvent::id)->batter;
      };
      EXPECT_EQ(batterAt(scripted.revised - Seconds(1)), scripted.event.batter);
      EXPECT_EQ(batterAt(scripted.revised), scripted.revisedBatter);
      EXPECT_NE(scripted.event.batter, scripted.revisedBatter);
      return;
    }
  }
  FAIL() << "no seed revises an event";
}

TEST(MatchFeed, TheNextFixtureIsTheEarliestWithAStartTimeToCome) {
  const MatchFeed feed = simulatedFeed(1, from("8"), origin);
  const auto next = [&](Date now) {
    const auto payload = feed.keyEvents(featuredMatchId, std::nullopt, now);
    return payload->nextFixture ? payload->nextFixture->id : "none";
  };
  EXPECT_EQ(next(origin), "match-4");
  const Date start = *feed.match("match-4", origin).match->startTime;
  EXPECT_EQ(next(start - 1us), "match-4");
  EXPECT_EQ(next(start), "match-5");
  EXPECT_EQ(next(origin + std::chrono::days(20)), "none");
}

TEST(ReplayFeed, PlaysEachFileLiveFromItsFirstBall) {
  const auto feed =
      replayFeed({fixtures + "won-by-wickets.json", fixtures + "dls.json"}, from("0"), origin);
  ASSERT_TRUE(feed.has_value()) << feed.error();
  const auto list = feed->matches(origin);
  EXPECT_EQ(ids(list.live), (std::vector<std::string>{"won-by-wickets", "dls"}));
  EXPECT_EQ(list.live[0].innings, (std::vector<Innings>{{"HCG", 0, 0, 0.0}}));
  const auto end = feed->matches(origin + 2h);
  EXPECT_EQ(ids(end.finished), (std::vector<std::string>{"won-by-wickets", "dls"}));
  EXPECT_EQ(end.finished[0].status, "Inland Kites won by 7 wickets");
  EXPECT_EQ(end.finished[0].innings,
            (std::vector<Innings>{{"HCG", 46, 2, 4.0}, {"IK", 47, 3, 3.0}}));
}

TEST(ReplayFeed, FilesOfOneNameGetIdsOfTheirOwn) {
  const std::filesystem::path file = fixtures + "dls.json";
  const auto feed = replayFeed({file, file, file}, from("0"), origin);
  ASSERT_TRUE(feed.has_value());
  EXPECT_EQ(ids(feed->matches(origin).live), (std::vector<std::string>{"dls", "dls-2", "dls-3"}));
}

TEST(ReplayFeed, NamesTheFileThatCannotBePlayed) {
  const auto missing = replayFeed({fixtures + "nowhere.json"}, from("0"), origin);
  ASSERT_FALSE(missing.has_value());
  EXPECT_EQ(missing.error().find(fixtures + "nowhere.json: "), 0U);
  const auto folder = replayFeed({fixtures}, from("0"), origin);
  ASSERT_FALSE(folder.has_value());
  EXPECT_EQ(folder.error().find(fixtures), 0U);
  const auto notMatch = std::filesystem::path(testing::TempDir()) / "kestrow-not-a-match.json";
  std::ofstream(notMatch) << R"({"info":{"teams":["A","B"]},"innings":[{"overs":[]}]})";
  const auto wrong = replayFeed({fixtures + "dls.json", notMatch}, from("0"), origin);
  ASSERT_FALSE(wrong.has_value());
  EXPECT_EQ(wrong.error().find(notMatch.string() + ": innings[0]"), 0U) << wrong.error();
  std::filesystem::remove(notMatch);
}

}  // namespace
}  // namespace kestrow::service
