// The pollers and the real service together, in the situations that a service or a user brings
// about.
#include "ScoreService/Feeds.hpp"
#include "Tests/EndToEnd/FollowedMatch.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using service::featuredMatchId;

const Date start = *parseInternetDate("2026-04-12T14:00:00Z");
constexpr Seconds minute{60};

service::MatchFeed feedAt(const char* point, double speed = 1, std::uint64_t seed = 1,
                          Date origin = start) {
  return service::simulatedFeed(
      seed, {.flags = {}, .start = *service::parseStartPoint(point), .speed = speed}, origin);
}

std::vector<std::int64_t> idsOf(const std::vector<ShownAlert>& alerts) {
  std::vector<std::int64_t> ids;
  ids.reserve(alerts.size());
  for (const ShownAlert& alert : alerts) ids.push_back(alert.event.id);
  return ids;
}

std::vector<BoomEvent> eventsOf(const std::vector<ShownAlert>& alerts) {
  std::vector<BoomEvent> events;
  events.reserve(alerts.size());
  for (const ShownAlert& alert : alerts) events.push_back(alert.event);
  return events;
}

std::vector<BoomEvent> momentsAt(const service::MatchFeed& feed, const std::string& id, Date now) {
  return feed.keyEvents(id, std::nullopt, now)->keyMoments;
}

// What must hold whatever happens: rising ids, so no alert twice, and four seconds each.
void expectGoodAlerts(const FollowedMatch& followed) {
  const auto ids = idsOf(followed.shown());
  EXPECT_EQ(std::ranges::adjacent_find(ids, std::greater_equal()), ids.end());
  for (const ShownAlert& alert : followed.shown()) {
    EXPECT_EQ(alert.until - alert.from, BoomQueue::showDuration);
    EXPECT_FALSE(alert.event.late);
    EXPECT_LE(alert.event.kind, BoomKind::wicket);
  }
}

class WholeSimulation : public testing::TestWithParam<std::uint64_t> {};

TEST_P(WholeSimulation, ShowsEachNewEventOnceAndLogsThemAll) {
  const auto feed = feedAt("before", 3, GetParam());
  FollowedMatch followed(feed, featuredMatchId, start);
  ASSERT_TRUE(followed.playToTheEnd(400));
  expectGoodAlerts(followed);
  EXPECT_EQ(eventsOf(followed.shown()), alertsOf(followed.answers()));
  EXPECT_GT(followed.shown().size(), 20U);
  const auto moments = momentsAt(feed, featuredMatchId, followed.now());
  EXPECT_EQ(followed.proPoller().log().entries, moments);
  EXPECT_EQ(followed.proPoller().log().lines().size(), feed.all().front().script.events().size());
  // The newest event seen stays behind for the next run.
  EXPECT_EQ(followed.store().load().lastEventIdByMatch,
            (std::map<std::string, std::int64_t>{{featuredMatchId, moments.back().id}}));
  EXPECT_EQ(followed.poller().state().lastMatch->status, feed.all().front().script.match().result);
  EXPECT_TRUE(followed.proPoller().finishedAt().has_value());
  EXPECT_TRUE(followed.proPoller().nextFixture().has_value());
}

INSTANTIATE_TEST_SUITE_P(Seeds, WholeSimulation,
                         testing::Range(std::uint64_t{1}, std::uint64_t{9}));

TEST(FollowedMatch, TheSimulationsCorrectionsLateAndRevisedEventsWereAmongThem) {
  std::set<BoomKind> kinds;
  bool wasLate = false;
  bool wasRevised = false;
  bool didJump = false;
  for (std::uint64_t seed = 1; seed < 9; ++seed) {
    std::int64_t before = 0;
    const auto feed = feedAt("before", 3, seed);
    for (const auto& scripted : feed.all().front().script.events()) {
      kinds.insert(scripted.event.kind);
      wasLate = wasLate || scripted.event.late;
      wasRevised = wasRevised || scripted.revisedBatter.has_value();
      didJump = didJump || scripted.event.id > before + 1;
      before = scripted.event.id;
    }
  }
  EXPECT_EQ(kinds.size(), 5U);
  EXPECT_TRUE(wasLate);
  EXPECT_TRUE(wasRevised);
  EXPECT_TRUE(didJump);
}

TEST(FollowedMatch, WhatHappenedBeforeFollowingIsLoggedButNotShown) {
  const auto feed = feedAt("15");
  FollowedMatch followed(feed, featuredMatchId, start);
  followed.poll();
  const auto before = momentsAt(feed, featuredMatchId, start);
  ASSERT_GT(before.size(), 3U);
  EXPECT_TRUE(followed.shown().empty());
  EXPECT_EQ(followed.proPoller().log().entries, before);
  followed.play(minute * 20);
  ASSERT_FALSE(followed.shown().empty());
  EXPECT_GT(followed.shown().front().event.id, before.back().id);
}

TEST(FollowedMatch, AfterMissedPollsOnlyTheLastThreeAreShown) {
  const auto feed = feedAt("2");
  FollowedMatch followed(feed, featuredMatchId, start);
  followed.poll();
  followed.advance(minute * 60);
  followed.poll();
  followed.advance(minute);
  EXPECT_EQ(followed.shown().size(), 3U);
  EXPECT_EQ(eventsOf(followed.shown()), alertsOf(followed.answers()));
  EXPECT_EQ(followed.shown()[1].from, followed.shown()[0].until);
  EXPECT_EQ(followed.shown()[2].from, followed.shown()[1].until);
  EXPECT_EQ(followed.proPoller().log().entries,
            momentsAt(feed, featuredMatchId, followed.now() - std::chrono::minutes(1)));
}

TEST(FollowedMatch, AnAnswerThatGoesBackInTimeShowsNothingAndNothingTwice) {
  FollowedMatch followed(feedAt("0", 5), featuredMatchId, start);
  followed.play(minute * 10);
  const auto shown = followed.shown();
  const auto log = followed.proPoller().log();
  ASSERT_GT(shown.size(), 3U);
  followed.shiftServiceClock(minute * -8);
  followed.play(minute * 4);
  EXPECT_EQ(idsOf(followed.shown()), idsOf(shown));
  EXPECT_EQ(followed.proPoller().log().entries.size(), log.entries.size());
  followed.shiftServiceClock(Seconds(0));
  ASSERT_TRUE(followed.playToTheEnd(400));
  expectGoodAlerts(followed);
  EXPECT_EQ(followed.proPoller().log().entries, followed.answers().back().keyMoments);
}

TEST(FollowedMatch, AServiceThatRestartsWithANewMatchUnderTheIdShowsNothingStale) {
  FollowedMatch followed(feedAt("0", 5), featuredMatchId, start);
  followed.play(minute * 10);
  const auto shown = followed.shown();
  const auto highest = followed.proPoller().queue().lastSeenId;
  ASSERT_TRUE(highest.has_value());
  const auto other = feedAt("before", 5, 2, followed.now());
  followed.restartService(other);
  followed.play(minute * 5);
  // The ids of the new match begin anew: up to those already seen it is not announced.
  EXPECT_EQ(idsOf(followed.shown()), idsOf(shown));
  ASSERT_TRUE(followed.playToTheEnd(400));
  expectGoodAlerts(followed);
  const auto moments = momentsAt(other, featuredMatchId, followed.now());
  for (std::size_t i = shown.size(); i < followed.shown().size(); ++i) {
    const BoomEvent& event = followed.shown()[i].event;
    EXPECT_GT(event.id, *highest);
    const auto moment = std::ranges::find(moments, event.id, &BoomEvent::id);
    ASSERT_NE(moment, moments.end());
    EXPECT_EQ(moment->kind, event.kind);
  }
  EXPECT_GT(followed.shown().size(), shown.size());
  // Every moment of the new match is in the log, in place of the old one of the same id.
  for (const BoomEvent& moment : moments) {
    EXPECT_EQ(std::ranges::count(followed.proPoller().log().entries, moment), 1);
  }
}

TEST(FollowedMatch, AMatchSwitchedInFlightLeavesNothingOfTheOldOne) {
  const auto feed = feedAt("15");
  // The old match is asked for first, and its answer comes after the new one's.
  FollowedMatch followed(feed, featuredMatchId, start,
                         {*service::parseFault("latency=1@first:1@/api/pro/match")});
  followed.proPoller().startUpdate(FollowState(featuredMatchId));
  followed.awaitRequests(1);
  followed.runToEnd(followed.proPoller().update(FollowState("match-2")));
  ASSERT_EQ(followed.answers().size(), 1U);
  followed.awaitAnswers(2);
  ASSERT_EQ(followed.answers().back().match.id, featuredMatchId);
  EXPECT_EQ(followed.proPoller().matchId(), "match-2");
  EXPECT_EQ(followed.proPoller().log().entries, momentsAt(feed, "match-2", start));
  followed.poller().follow("match-2");
  followed.play(minute * 3);
  EXPECT_EQ(followed.answers().front().match.id, "match-2");
  for (const ShownAlert& alert : followed.shown()) {
    EXPECT_EQ(
        std::ranges::count(followed.proPoller().log().entries, alert.event.id, &BoomEvent::id), 1);
  }
  EXPECT_EQ(followed.store().load().lastEventIdByMatch->count(featuredMatchId), 0U);
}

Task<void> updateAndPause(ProPoller& poller, FollowState state) {
  poller.startUpdate(state);
  poller.pause();
  // A later request of the same match, so that the first one's answer has long been dropped.
  auto task = poller.update(std::move(state));
  co_await task;
}

TEST(FollowedMatch, APauseInFlightDropsTheAnswer) {
  FollowedMatch followed(feedAt("15"), featuredMatchId, start);
  int changes = 0;
  followed.proPoller().onChange = [&] { ++changes; };
  followed.runToEnd(updateAndPause(followed.proPoller(), FollowState(featuredMatchId)));
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(followed.proPoller().hasBaseline());
  EXPECT_TRUE(followed.shown().empty());
}

TEST(FollowedMatch, AServiceWithFaultsLosesNoEventAndShowsNoneTwice) {
  const auto feed = feedAt("0", 2);
  FollowedMatch followed(feed, featuredMatchId, start,
                         {*service::parseFault("status=500@every:3@/api/pro/match"),
                          *service::parseFault("garbage@every:4@/api/pro/match"),
                          *service::parseFault("truncate@every:5@/api/pro/match"),
                          *service::parseFault("drop@every:7@/api/pro/match"),
                          *service::parseFault("drop@every:6@/api/matches")});
  ASSERT_TRUE(followed.playToTheEnd(400));
  // Whatever the last faults held back.
  followed.play(minute * 6);
  expectGoodAlerts(followed);
  EXPECT_EQ(eventsOf(followed.shown()), alertsOf(followed.answers()));
  EXPECT_EQ(followed.proPoller().log().entries, momentsAt(feed, featuredMatchId, followed.now()));
}

TEST(FollowedMatch, ThreeMissesMakeTheScoreStaleAndOneAnswerFreshAgain) {
  FollowedMatch followed(feedAt("8"), featuredMatchId, start,
                         {*service::parseFault("status=503@first:3@/api/matches")});
  followed.play(minute * 2);
  EXPECT_FALSE(followed.poller().state().isStale());
  followed.poll();
  EXPECT_TRUE(followed.poller().state().isStale());
  EXPECT_EQ(followed.poller().state().lastMatch, std::nullopt);
  followed.poll();
  EXPECT_FALSE(followed.poller().state().isStale());
  EXPECT_EQ(followed.poller().state().lastMatch->id, featuredMatchId);
}

TEST(FollowedMatch, AMatchThatTheServiceDoesNotKnowChangesNothing) {
  FollowedMatch followed(feedAt("8"), "match-99", start);
  followed.play(minute * 3);
  EXPECT_TRUE(followed.answers().empty());
  EXPECT_TRUE(followed.proPoller().log().entries.empty());
  EXPECT_FALSE(followed.proPoller().hasBaseline());
  EXPECT_EQ(followed.store().load().lastEventIdByMatch, std::nullopt);
}

}  // namespace
}  // namespace kestrow
