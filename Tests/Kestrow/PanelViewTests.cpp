#include "Kestrow/PanelView.hpp"
#include "Tests/Kestrow/PanelViewFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <expected>
#include <optional>

namespace kestrow {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

TEST_F(PanelControllerTest, HasNoWindowUntilItIsShown) {
  EXPECT_THAT(desktop_.panels, IsEmpty());
  EXPECT_FALSE(panel().isVisible());
  panel().refresh();
  panel().refreshPicker();
  panel().close();
  EXPECT_FALSE(panel().escapePressed());
  EXPECT_THAT(desktop_.panels, IsEmpty());
}

TEST_F(PanelControllerTest, OpensInPlaceWithTheKeyboardAndWatches) {
  panel().show();
  EXPECT_TRUE(panel().isVisible());
  EXPECT_THAT(surface().calls, ElementsAre("frame", "top", "show", "watch"));
  EXPECT_EQ(
      surface().frames.back(),
      PanelController::frameFor(desktop_.attachedScreens, std::nullopt, pill_.windowFrame(), 500));
  EXPECT_EQ(pickerText(), "Loading matches…");
  EXPECT_THAT(loads_, SizeIs(1));
}

TEST_F(PanelControllerTest, WithoutAPillStaysOnTheScreenThatItHasTheKeyboardOn) {
  const auto second = FakeDesktop::screen({1440, 0, 1000, 900}, 24);
  desktop_.attachedScreens.push_back(second);
  defaults_.setBoolean(DefaultsKey::pillHidden, true);
  pill_.rebuild(false);
  desktop_.screenWithKeyboard = second;
  panel().show();
  EXPECT_EQ(surface().frames.back().midX(), 1940);
}

TEST_F(PanelControllerTest, OpensAtItsTopAndStaysWhereItIsWhenShownAgain) {
  panel().show();
  surface().calls.clear();
  panel().show();
  EXPECT_THAT(surface().calls, Not(Contains("top")));
  panel().close();
  panel().show();
  EXPECT_THAT(surface().calls, Contains("top"));
}

TEST_F(PanelControllerTest, EveryOpeningLoadsAnewInTheSameWindow) {
  openWithMatches();
  panel().close();
  panel().show();
  EXPECT_THAT(desktop_.panels, SizeIs(1));
  EXPECT_THAT(loads_, SizeIs(2));
  EXPECT_EQ(pickerText(), "Loading matches…");
}

TEST_F(PanelControllerTest, ThePickerLearnsTheFollowedMatchBeforeItLoads) {
  poller_.follow("m2");
  panel().show();
  EXPECT_EQ(picker_.followedId, "m2");
}

TEST_F(PanelControllerTest, ClosesOnAnOutsideClick) {
  panel().show();
  client().clickedOutside();
  EXPECT_FALSE(panel().isVisible());
  EXPECT_FALSE(surface().hasMonitors);
}

TEST_F(PanelControllerTest, ClosesWhenItLosesTheKeyboard) {
  panel().show();
  client().resignedKey();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelControllerTest, EscapeClosesItWhileItHasTheKeyboard) {
  panel().show();
  EXPECT_TRUE(client().escapePressed());
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelControllerTest, EscapeInAnotherWindowIsLeftAlone) {
  panel().show();
  surface().isKey = false;
  EXPECT_FALSE(client().escapePressed());
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, ClosesOnce) {
  panel().show();
  client().clickedOutside();
  surface().calls.clear();
  client().resignedKey();
  client().clickedOutside();
  EXPECT_THAT(surface().calls, IsEmpty());
}

TEST_F(PanelControllerTest, ThePillClosesWhatItOpened) {
  panel().toggle();
  EXPECT_TRUE(panel().isVisible());
  panel().toggle();
  EXPECT_FALSE(panel().isVisible());
  panel().toggle();
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, AFurtherShowKeepsItOpen) {
  panel().show();
  panel().show();
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, LoadedMatchesShowWithTheFollowedOneOn) {
  poller_.follow("m2");
  openWithMatches();
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
}

TEST_F(PanelControllerTest, ThePollersMatchCountsNotTheOneOfTheLoad) {
  poller_.follow("m1");
  openWithMatches();
  poller_.follow("m2");
  panel().refreshPicker();
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
}

TEST_F(PanelControllerTest, PickingAMatchFollowsStoresAndShowsIt) {
  poller_.follow("m1");
  openWithMatches();
  pick("m2");
  EXPECT_EQ(poller_.state().followedMatchId, "m2");
  EXPECT_EQ(store_.followedMatchId(), "m2");
  EXPECT_EQ(picker_.followedId, "m2");
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, APickThatIsNoMatchIsIgnored) {
  poller_.follow("m1");
  openWithMatches();
  for (const char* id : {"", "m2", "quit"}) client().radioButtonPicked(id);
  EXPECT_EQ(poller_.state().followedMatchId, "m1");
}

TEST_F(PanelControllerTest, APickWithoutAMatchIdIsTakenBack) {
  poller_.follow("m1");
  openWithMatches();
  const auto before = surface().contentsSet;
  pick("");
  EXPECT_EQ(poller_.state().followedMatchId, "m1");
  EXPECT_GT(surface().contentsSet, before) << "the control must be told";
}

TEST_F(PanelControllerTest, AMatchThatIsListedTwiceCanBePickedInEitherRow) {
  panel().show();
  answer(records::live({records::match("m1"), records::match("m2"), records::match("m1")}));
  pick("m1", 2);
  EXPECT_EQ(poller_.state().followedMatchId, "m1");
  EXPECT_THAT(matchesOn(), ElementsAre("m1", "m1"));
  pick("m2");
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
}

TEST_F(PanelControllerTest, AMatchMayHaveTheIdOfAnotherControl) {
  panel().show();
  answer(records::live({records::match("quit"), records::match("section-Live")}));
  pick("quit");
  EXPECT_EQ(desktop_.quits, 0);
  EXPECT_EQ(poller_.state().followedMatchId, "quit");
  EXPECT_THAT(matchesOn(), ElementsAre("quit"));
}

TEST_F(PanelControllerTest, AFailedLoadOffersToRetry) {
  panel().show();
  answer(std::unexpected(FeedError{}));
  EXPECT_EQ(pickerText(), "Couldn't load matches");
  client().buttonPressed("retry");
  EXPECT_THAT(loads_, SizeIs(2));
  EXPECT_EQ(pickerText(), "Loading matches…");
  answer(MatchesResponse{});
  EXPECT_EQ(pickerText(), "No live or upcoming matches");
}

TEST_F(PanelControllerTest, ALoadThatEndsAfterClosingDoesNotOpenIt) {
  panel().show();
  panel().close();
  const auto frames = surface().frames.size();
  answer(MatchesResponse{});
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(surface().frames.size(), frames);
}

TEST_F(PanelControllerTest, ALoadThatEndsAfterThePanelHasGoneDoesNoHarm) {
  panel().show();
  panel_.reset();
  answer(MatchesResponse{});
  EXPECT_FALSE(surface().exists);
}

TEST_F(PanelControllerTest, ContentThatChangesHeightMovesTheOpenWindow) {
  panel().show();
  surface().fittingHeight = 321;
  panel().refresh();
  EXPECT_EQ(surface().frames.back().height, 321);
  surface().fittingHeight = 322;
  panel().refreshPicker();
  EXPECT_EQ(surface().frames.back().height, 322);
}

TEST_F(PanelControllerTest, AnOpenWindowGoesWithThePillToAnotherScreen) {
  desktop_.screensChanged.notify();
  panel().show();
  desktop_.attachedScreens = {FakeDesktop::screen({0, 0, 800, 600}, 24)};
  desktop_.screensChanged.notify();
  EXPECT_EQ(surface().frames.back(), (Rect{230, 70, 340, 500}));
  panel().close();
  const auto frames = surface().frames.size();
  desktop_.screensChanged.notify();
  EXPECT_EQ(surface().frames.size(), frames);
}

TEST_F(PanelControllerTest, TheLogComesNewestFirst) {
  poller_.follow("m1");
  pro_.startUpdate(poller_.state());
  events_.complete(ProMatchResult{ProMatchPayload{.match = records::match("m1"),
                                                  .newestEventId = 2,
                                                  .events = {},
                                                  .keyMoments = records::booms(1, 2)}});
  panel().show();
  const auto* log = surface().find<PanelLines>("log");
  ASSERT_NE(log, nullptr);
  EXPECT_THAT(log->lines, SizeIs(2));
}

TEST_F(PanelControllerTest, QuitEndsTheProgram) {
  panel().show();
  client().buttonPressed("quit");
  EXPECT_EQ(desktop_.quits, 1);
}

TEST_F(PanelControllerTest, ControlsThatAreNotThereDoNothing) {
  panel().show();
  client().buttonPressed("other");
  client().checkBoxToggled("other", true);
  EXPECT_EQ(desktop_.quits, 0);
  EXPECT_THAT(defaults_.values, IsEmpty());
}

}  // namespace
}  // namespace kestrow
