#include "Kestrow/AppDelegate.hpp"
#include "Kestrow/PanelNodes.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Kestrow/AppDelegateFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
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
