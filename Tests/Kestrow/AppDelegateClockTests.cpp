#include "Kestrow/AppDelegate.hpp"
#include "Tests/Kestrow/AppDelegateFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

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

}  // namespace
}  // namespace kestrow
