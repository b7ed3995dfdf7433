#include "Kestrow/AppDelegate.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Kestrow/AppDelegateFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using namespace std::chrono_literals;

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

}  // namespace
}  // namespace kestrow
