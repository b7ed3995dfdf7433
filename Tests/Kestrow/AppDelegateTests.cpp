#include "Kestrow/AppDelegate.hpp"
#include "Kestrow/PanelNodes.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/HeldTransport.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/NoLogin.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace kestrow {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

constexpr std::string_view matchesPath = "/api/matches";
constexpr std::string_view eventsPath = "/api/pro/match";
constexpr std::string_view installPath = "/api/install";

Match liveMatch(std::int64_t runs = 45) {
  Match match = records::match("m1");
  match.innings = {{.team = "MI", .runs = runs, .wickets = 1, .overs = 6.2}};
  return match;
}

class AppDelegateTest : public testing::Test {
 protected:
  void follow(const std::string& id) const {
    ASSERT_TRUE(LocalStore(folder_.path()).setFollowedMatchId(id));
  }

  AppDelegate::Surroundings surroundings() {
    return {.desktop = desktop_,
            .defaults = defaults_,
            .mainThread = mainThread_,
            .transport = http_.transport(),
            .loginService = std::make_unique<NoLoginService>(),
            .launchAgent = std::make_unique<NoLaunchAgent>(),
            .stateDirectory = folder_.path(),
            .baseUrl = "http://scores.test",
            .now = [this] { return mainThread_.now() + clockShift_; },
            .formatStart = [this](Date) { return "start " + std::to_string(++startsWorded_); }};
  }

  void launch() {
    delegate_ = std::make_unique<AppDelegate>(surroundings());
    delegate_->applicationDidFinishLaunching();
  }

  void answerMatches(std::vector<Match> live) {
    ASSERT_TRUE(http_.answer(matchesPath, encode(MatchesResponse{.live = std::move(live)})));
  }

  void answerEvents(std::int64_t newest, std::vector<BoomEvent> events,
                    std::optional<Match> nextFixture = {}) {
    ASSERT_TRUE(
        http_.answer(eventsPath, encode(ProMatchPayload{.match = liveMatch(),
                                                        .newestEventId = newest,
                                                        .events = std::move(events),
                                                        .keyMoments = {},
                                                        .nextFixture = std::move(nextFixture)})));
  }

  // Follows a live match whose ten events so far are taken as seen.
  void launchIntoLiveMatch() {
    follow("m1");
    launch();
    answerMatches({liveMatch()});
    answerEvents(10, {});
  }

  // A minute later, a poll brings these events.
  void pollBrings(std::vector<BoomEvent> events) {
    mainThread_.advance(60s);
    answerMatches({liveMatch()});
    const auto newest = events.back().id;
    answerEvents(newest, std::move(events));
  }

  PanelSurfaceRecord& panel() const { return *desktop_.panels.at(0); }
  auto timesShown() const { return std::ranges::count(panel().calls, "show"); }
  std::string pillText() const { return desktop_.surface()->client->accessibilityLabel(); }

  TemporaryFolder folder_;
  ManualMainThread mainThread_;
  std::chrono::seconds clockShift_{0};
  int startsWorded_ = 0;
  HeldTransport http_;
  FakeDesktop desktop_;
  FakeDefaults defaults_;
  std::unique_ptr<AppDelegate> delegate_;
};

TEST_F(AppDelegateTest, LaunchingPutsThePillOnTheScreenPollsAndLogsOneLine) {
  launch();
  ASSERT_TRUE(desktop_.surface());
  EXPECT_THAT(pillText(), HasSubstr(PillDisplay::pickMatchText));
  EXPECT_EQ(http_.waiting(matchesPath), 1U);
  EXPECT_THAT(desktop_.logLines, ElementsAre("Kestrow started (accessory app)."));
}

TEST_F(AppDelegateTest, RenderingBeforeLaunchDoesNothing) {
  delegate_ = std::make_unique<AppDelegate>(surroundings());
  delegate_->render();
  delegate_->applicationShouldHandleReopen();
  EXPECT_THAT(desktop_.surfaces, IsEmpty());
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
  EXPECT_THAT(desktop_.panels, IsEmpty());
}

TEST_F(AppDelegateTest, ReportsTheInstallationOnceWithItsIdAndWaitsForNothing) {
  launch();
  const auto reports = http_.requests(installPath);
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].method, HttpMethod::post);
  EXPECT_THAT(reports[0].headers, Contains(std::pair<std::string, std::string>(
                                      "x-install-id", LocalStore(folder_.path()).installId())));
  answerMatches({liveMatch()});
  mainThread_.advance(600s);
  EXPECT_EQ(http_.requests(installPath).size(), 1U);
}

TEST_F(AppDelegateTest, WithNothingFollowedTheNextRenderIsAMinuteAway) {
  launch();
  EXPECT_THAT(mainThread_.delays(), ElementsAre(60s));
  answerMatches({liveMatch()});
  EXPECT_THAT(mainThread_.delays(), ElementsAre(60s, 300s));
  EXPECT_THAT(pillText(), HasSubstr(PillDisplay::pickMatchText));
  EXPECT_EQ(http_.requests(eventsPath).size(), 0U);
}

TEST_F(AppDelegateTest, RendersEveryMinuteSoThatTimesStayCurrent) {
  follow("m1");
  launch();
  Match match = records::match("m1", MatchPhase::notStarted);
  match.startTime = mainThread_.now() + 2h;
  ASSERT_TRUE(http_.answer(matchesPath, encode(MatchesResponse{.upcoming = {match}})));
  const std::string before = pillText();
  mainThread_.advance(59s);
  EXPECT_EQ(pillText(), before);
  mainThread_.advance(1s);
  EXPECT_NE(pillText(), before);
}

TEST_F(AppDelegateTest, OnlyOneRenderIsEverPending) {
  launchIntoLiveMatch();
  for (int i = 0; i < 5; ++i) delegate_->render();
  EXPECT_THAT(mainThread_.delays(), ElementsAre(60s, 60s));  // this render and the next poll
}

TEST_F(AppDelegateTest, ShowsTheFollowedMatchAfterThePollAndAsksForItsEvents) {
  follow("m1");
  launch();
  EXPECT_THAT(pillText(), HasSubstr(PillDisplay::loadingText));
  answerMatches({liveMatch()});
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  ASSERT_EQ(http_.requests(eventsPath).size(), 1U);
  EXPECT_THAT(http_.requests(eventsPath)[0].url, HasSubstr("id=m1"));
}

TEST_F(AppDelegateTest, WhatHappenedBeforeItStartedIsNotAnnounced) {
  follow("m1");
  launch();
  answerMatches({liveMatch()});
  answerEvents(10, records::booms(1, 10));
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  EXPECT_THAT(desktop_.announcements, IsEmpty());
}

TEST_F(AppDelegateTest, AnAlertShowsForFourSecondsThenTheScoreComesBack) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11, BoomKind::six)});
  EXPECT_THAT(pillText(), HasSubstr("SIX!"));
  EXPECT_EQ(mainThread_.nextDelay(), 4s);
  mainThread_.advance(3999ms);
  EXPECT_THAT(pillText(), HasSubstr("SIX!"));
  mainThread_.advance(1ms);
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
}

TEST_F(AppDelegateTest, AnAlertIsAnnouncedOnceHoweverManyRendersShowIt) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11, BoomKind::wicket)});
  EXPECT_THAT(desktop_.announcements, ElementsAre("WICKET! R Sharma (MI)"));
  delegate_->render();
  mainThread_.advance(1s);
  delegate_->render();
  EXPECT_EQ(mainThread_.nextDelay(), 3s);
  mainThread_.advance(60s);
  EXPECT_EQ(desktop_.announcements.size(), 1U);
}

TEST_F(AppDelegateTest, AlertsThatWaitShowOneAfterAnother) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11, BoomKind::four), records::boom(12, BoomKind::six)});
  EXPECT_THAT(pillText(), HasSubstr("FOUR!"));
  mainThread_.advance(4s);
  EXPECT_THAT(pillText(), HasSubstr("SIX!"));
  EXPECT_EQ(mainThread_.nextDelay(), 4s);
  mainThread_.advance(4s);
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  EXPECT_THAT(desktop_.announcements, ElementsAre("FOUR! R Sharma (MI)", "SIX! R Sharma (MI)"));
}

TEST_F(AppDelegateTest, TheNextRenderIsNeverSoonerThanFiftyMilliseconds) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11)});
  mainThread_.advance(3950ms);
  delegate_->render();
  EXPECT_EQ(mainThread_.nextDelay(), 50ms);
  mainThread_.advance(49ms);
  delegate_->render();
  EXPECT_EQ(mainThread_.nextDelay(), 50ms);
}

TEST_F(AppDelegateTest, AnAlertTakesTheCountdownsPlaceAndGivesItBack) {
  follow("m1");
  launch();
  Match finished = liveMatch();
  finished.state = MatchPhase::finished;
  finished.status = "MI won";
  const auto poll = [&](std::vector<BoomEvent> events) {
    ASSERT_TRUE(http_.answer(matchesPath, encode(MatchesResponse{.finished = {finished}})));
    Match next = records::match("m2", MatchPhase::notStarted);
    next.team1 = {.name = "Delhi Capitals", .shortName = "DC"};
    next.startTime = mainThread_.now() + 5h;
    answerEvents(events.empty() ? 10 : events.back().id, events, next);
  };
  poll({});
  EXPECT_THAT(pillText(), HasSubstr("MI won"));
  for (int i = 0; i < 7; ++i) {
    mainThread_.advance(300s);
    poll({});
  }
  EXPECT_THAT(pillText(), HasSubstr("DC"));
  mainThread_.advance(300s);
  poll({records::boom(11, BoomKind::four)});
  EXPECT_THAT(pillText(), HasSubstr("FOUR!"));
  mainThread_.advance(4s);
  EXPECT_THAT(pillText(), HasSubstr("DC"));
  EXPECT_EQ(desktop_.announcements.size(), 1U);
}

TEST_F(AppDelegateTest, InTheSubtleStyleTheScoreStaysAndTheAlertIsStillSpoken) {
  ASSERT_TRUE(LocalStore(folder_.path()).setCustomisation({"default", AlertStyle::subtle}));
  launchIntoLiveMatch();
  const Rect frame = desktop_.surface()->frame;
  const int redraws = desktop_.surface()->redraws;
  pollBrings({records::boom(11)});
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  EXPECT_GT(desktop_.surface()->redraws, redraws);
  EXPECT_EQ(desktop_.surface()->frame, frame);
  EXPECT_THAT(desktop_.announcements, ElementsAre("SIX! R Sharma (MI)"));
}

TEST_F(AppDelegateTest, TheWindowGlidesToTheAlertUnlessMotionIsReduced) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11)});
  EXPECT_EQ(desktop_.surface()->moves.back().duration, PillController::frameChange);
  mainThread_.advance(4s);
  EXPECT_EQ(desktop_.surface()->moves.back().duration, PillController::frameChange);
  desktop_.reducesMotion = true;
  pollBrings({records::boom(12)});
  EXPECT_THAT(pillText(), HasSubstr("SIX!"));
  EXPECT_EQ(desktop_.surface()->moves.back().duration, 0s);
}

TEST_F(AppDelegateTest, WhileAsleepNoAnswerIsTakenAndNothingIsAsked) {
  launchIntoLiveMatch();
  mainThread_.advance(60s);
  ASSERT_EQ(http_.waiting(matchesPath), 1U);
  desktop_.willSleep.notify();
  answerMatches({liveMatch(99)});
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  const auto asked = http_.requests(matchesPath).size();
  mainThread_.advance(3600s);
  EXPECT_EQ(http_.requests(matchesPath).size(), asked);
}

TEST_F(AppDelegateTest, AnEventAnswerInFlightWhenSleepBeginsIsDropped) {
  launchIntoLiveMatch();
  mainThread_.advance(60s);
  answerMatches({liveMatch()});
  ASSERT_EQ(http_.waiting(eventsPath), 1U);
  desktop_.willSleep.notify();
  answerEvents(11, {records::boom(11)});
  EXPECT_THAT(desktop_.announcements, IsEmpty());
  desktop_.didWake.notify();
  answerMatches({liveMatch()});
  EXPECT_THAT(http_.requests(eventsPath).back().url, HasSubstr("since=10"));
  answerEvents(11, {records::boom(11)});
  EXPECT_THAT(desktop_.announcements, ElementsAre("SIX! R Sharma (MI)"));
}

TEST_F(AppDelegateTest, WakingPollsAndRendersAtOnce) {
  launchIntoLiveMatch();
  desktop_.willSleep.notify();
  clockShift_ = 8h;
  const auto asked = http_.requests(matchesPath).size();
  desktop_.didWake.notify();
  EXPECT_EQ(http_.requests(matchesPath).size(), asked + 1);
  EXPECT_THAT(mainThread_.delays(), ElementsAre(60s));
  answerMatches({liveMatch(120)});
  EXPECT_THAT(pillText(), HasSubstr("120/1"));
}

TEST_F(AppDelegateTest, AnAlertThatWasOnWhenTheMachineSleptIsOverAfterwards) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11)});
  desktop_.willSleep.notify();
  clockShift_ = 1h;
  desktop_.didWake.notify();
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
}

TEST_F(AppDelegateTest, AClockThatIsSetMakesItPollAndDropsWhatWasInFlight) {
  launchIntoLiveMatch();
  mainThread_.advance(60s);
  ASSERT_EQ(http_.waiting(matchesPath), 1U);
  clockShift_ = 1h;
  desktop_.clockChanged.notify();
  EXPECT_EQ(http_.waiting(matchesPath), 2U);
  answerMatches({liveMatch(99)});
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  answerMatches({liveMatch(120)});
  EXPECT_THAT(pillText(), HasSubstr("120/1"));
}

TEST_F(AppDelegateTest, AClockThatIsSetWhileAsleepDoesNotWakeThePoller) {
  launchIntoLiveMatch();
  desktop_.willSleep.notify();
  const auto asked = http_.requests(matchesPath).size();
  desktop_.clockChanged.notify();
  mainThread_.advance(60s);
  EXPECT_EQ(http_.requests(matchesPath).size(), asked);
}

TEST_F(AppDelegateTest, AnAlertEndsInFourSecondsAlsoWhenTheClockIsSetBack) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11)});
  mainThread_.advance(1s);
  clockShift_ = -2h;
  desktop_.clockChanged.notify();
  EXPECT_THAT(pillText(), HasSubstr("SIX!"));
  EXPECT_EQ(mainThread_.nextDelay(), 4s);
  mainThread_.advance(4s);
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  EXPECT_EQ(desktop_.announcements.size(), 1U);
}

TEST_F(AppDelegateTest, AClockSetForwardLeavesARunningAlertItsDeadline) {
  launchIntoLiveMatch();
  pollBrings({records::boom(11)});
  clockShift_ = 1s;
  desktop_.clockChanged.notify();
  EXPECT_EQ(mainThread_.nextDelay(), 3s);
}

TEST_F(AppDelegateTest, ThreeMissesMakeTheScoreStaleAndASuccessBringsItBack) {
  launchIntoLiveMatch();
  for (int i = 0; i < 3; ++i) {
    EXPECT_THAT(pillText(), testing::Not(HasSubstr(PillContent::staleTag)));
    mainThread_.advance(60s);
    ASSERT_TRUE(http_.fail(matchesPath));
    ASSERT_TRUE(http_.fail(eventsPath));
  }
  const std::string stale = pillText();
  EXPECT_THAT(stale, testing::ContainsRegex("[sS][tT][aA][lL][eE]|out of date"));
  mainThread_.advance(60s);
  answerMatches({liveMatch()});
  EXPECT_NE(pillText(), stale);
}

TEST_F(AppDelegateTest, AClickOpensThePanel) {
  launch();
  EXPECT_THAT(desktop_.panels, IsEmpty());
  desktop_.surface()->client->click();
  EXPECT_EQ(timesShown(), 1);
  EXPECT_TRUE(panel().isVisible);
}

TEST_F(AppDelegateTest, AnotherClickClosesThePanel) {
  launch();
  desktop_.surface()->client->click();
  desktop_.surface()->client->click();
  EXPECT_FALSE(panel().isVisible);
}

TEST_F(AppDelegateTest, OpeningTheProgramAgainLeavesAnOpenPanelOpen) {
  launch();
  desktop_.surface()->client->click();
  desktop_.reopen.notify();
  EXPECT_TRUE(panel().isVisible);
}

TEST_F(AppDelegateTest, OpeningTheProgramAgainOpensThePanel) {
  launch();
  desktop_.reopen.notify();
  EXPECT_EQ(timesShown(), 1);
  EXPECT_EQ(desktop_.surfaces.size(), 1U);
  EXPECT_TRUE(defaults_.values.empty());
}

TEST_F(AppDelegateTest, OpeningTheProgramAgainBringsAHiddenPillBack) {
  defaults_.setBoolean(DefaultsKey::pillHidden, true);
  launch();
  EXPECT_FALSE(desktop_.surface());
  desktop_.reopen.notify();
  ASSERT_TRUE(desktop_.surface());
  EXPECT_EQ(desktop_.surface()->moves.back().duration, 0s);
  EXPECT_FALSE(defaults_.boolean(DefaultsKey::pillHidden));
  EXPECT_EQ(timesShown(), 1);
}

TEST_F(AppDelegateTest, AnOpenPanelFollowsTheStateAndAClosedOneIsLeftAlone) {
  launchIntoLiveMatch();
  delegate_->render();
  EXPECT_THAT(desktop_.panels, IsEmpty());
  desktop_.reopen.notify();
  const int contents = panel().contentsSet;
  delegate_->render();
  EXPECT_GT(panel().contentsSet, contents);
  panel().isVisible = false;
  const int closed = panel().contentsSet;
  delegate_->render();
  EXPECT_EQ(panel().contentsSet, closed);
}

TEST_F(AppDelegateTest, PickingAMatchShowsItKeepsItAndPollsAtOnce) {
  launch();
  answerMatches({liveMatch()});
  desktop_.reopen.notify();
  const auto asked = http_.requests(matchesPath).size();
  panel().client->radioButtonPicked(panel_nodes::idOfMatch("m1"));
  EXPECT_THAT(pillText(), HasSubstr("45/1"));
  EXPECT_EQ(LocalStore(folder_.path()).followedMatchId(), "m1");
  EXPECT_EQ(http_.requests(matchesPath).size(), asked + 1);
  EXPECT_THAT(http_.requests(eventsPath).back().url, HasSubstr("id=m1"));
}

TEST_F(AppDelegateTest, GoesCleanlyWithRequestsInFlight) {
  follow("m1");
  launch();
  answerMatches({liveMatch()});
  ASSERT_EQ(http_.waiting(eventsPath), 1U);
  ASSERT_EQ(http_.waiting(installPath), 1U);
  delegate_.reset();
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
  answerEvents(11, {records::boom(11)});
  mainThread_.advance(600s);
  EXPECT_FALSE(desktop_.surface());
}

}  // namespace
}  // namespace kestrow
