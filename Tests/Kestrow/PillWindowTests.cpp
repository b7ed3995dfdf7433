#include "Kestrow/PillWindow.hpp"
#include "Tests/Support/FakeDesktop.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace kestrow {
namespace {

PillContent score(const std::string& primary = "145/3") {
  PillContent content;
  content.status = PillContent::Status::live;
  content.primary = primary;
  return content;
}

// Dot, gap, the score: 6 + 9 + 5 x 6.5, rounded up, and the padding.
constexpr double scoreWidth = 48 + 24;
constexpr Rect scoreFrame{720 - scoreWidth / 2, 876, scoreWidth, 24};

// The headline, 4 x 8, is the longer row.
constexpr double alertWidth = 32 + 24;
constexpr Rect alertFrame{720 - alertWidth / 2, 860, alertWidth, 40};

PillContent alert() {
  return PillContent::boom("SIX!", "MI");
}

using Move = PillSurfaceRecord::Move;

class PillControllerTest : public testing::Test {
 protected:
  PillController& pill() {
    if (!pill_) pill_ = std::make_unique<PillController>(score(), defaults_, desktop_);
    return *pill_;
  }
  PillSurfaceRecord& surface() { return *desktop_.surfaces.back(); }
  void show(const PillContent& content, PillEmphasis emphasis, bool animate = true) {
    pill().show(content, TeamTheme::standard(), emphasis, animate);
  }

  FakeDesktop desktop_;
  FakeDefaults defaults_;
  std::unique_ptr<PillController> pill_;
};

TEST_F(PillControllerTest, StandsAtTheTopCentreFromTheStart) {
  pill();
  ASSERT_EQ(desktop_.surfaces.size(), 1U);
  EXPECT_EQ(surface().moves, (std::vector<Move>{{scoreFrame, Seconds::zero()}}));
  EXPECT_EQ(surface().ordersFront, 1);
  EXPECT_EQ(pill().windowFrame(), scoreFrame);
  EXPECT_EQ(pill().view().layout(), (PillLayout{PillLayout::Drawn{{0, 0, scoreWidth, 24}}}));
  EXPECT_TRUE(surface().dot);
}

TEST_F(PillControllerTest, ShowingWhatIsShownDoesNothing) {
  show(score(), PillEmphasis::none);
  const int redraws = surface().redraws;
  show(score(), PillEmphasis::none);
  EXPECT_EQ(surface().moves.size(), 1U);
  EXPECT_EQ(surface().ordersFront, 1);
  EXPECT_EQ(surface().redraws, redraws);
}

TEST_F(PillControllerTest, MeasuresATextOnceForEachContent) {
  pill();
  desktop_.measurer.linesMeasured = 0;
  show(score("146/3"), PillEmphasis::none);
  EXPECT_EQ(desktop_.measurer.linesMeasured, 1);
  show(score("146/3"), PillEmphasis::flash);
  show(score("147/3"), PillEmphasis::none);
  show(score("146/3"), PillEmphasis::none);
  EXPECT_EQ(desktop_.measurer.linesMeasured, 4);
}

TEST_F(PillControllerTest, ADifferenceInContentThemeOrEmphasisIsShown) {
  show(score("146/3"), PillEmphasis::none);
  EXPECT_EQ(surface().moves.size(), 2U);
  EXPECT_EQ(pill().view().content(), score("146/3"));
  pill().show(score("146/3"), TeamTheme::named("csk"), PillEmphasis::none, true);
  EXPECT_EQ(surface().moves.size(), 3U);
  EXPECT_EQ(pill().view().theme(), TeamTheme::named("csk"));
  pill().show(score("146/3"), TeamTheme::named("csk"), PillEmphasis::flash, true);
  EXPECT_EQ(surface().moves.size(), 4U);
  EXPECT_EQ(pill().view().emphasis(), PillEmphasis::flash);
}

TEST_F(PillControllerTest, AnAlertGrowsThePillDownwardsInAFifthOfASecond) {
  show(alert(), PillEmphasis::expanded);
  EXPECT_EQ(surface().moves.back(), (Move{alertFrame, Seconds(0.2)}));
  EXPECT_EQ(alertFrame.maxY(), scoreFrame.maxY());
  EXPECT_EQ(pill().view().layout(), (PillLayout{PillLayout::Drawn{{0, 0, alertWidth, 40}}}));
}

TEST_F(PillControllerTest, ThePillShrinksBackAsItGrew) {
  show(alert(), PillEmphasis::expanded);
  show(score(), PillEmphasis::none);
  EXPECT_EQ(surface().moves.back(), (Move{scoreFrame, Seconds(0.2)}));
}

TEST_F(PillControllerTest, WithoutAnimationTheFrameChangesAtOnce) {
  show(alert(), PillEmphasis::expanded, false);
  EXPECT_EQ(surface().moves.back(), (Move{alertFrame, Seconds::zero()}));
}

TEST_F(PillControllerTest, AFlashNeverMovesTheFrameSlowly) {
  show(score(), PillEmphasis::flash);
  EXPECT_EQ(surface().moves.back(), (Move{scoreFrame, Seconds::zero()}));
  show(score(), PillEmphasis::none);
  EXPECT_EQ(surface().moves.back(), (Move{scoreFrame, Seconds::zero()}));
  EXPECT_EQ(surface().moves.size(), 3U);
}

TEST_F(PillControllerTest, OneAlertAfterAnotherDoesNotGlide) {
  show(alert(), PillEmphasis::expanded);
  show(PillContent::boom("WICKET!", "MI"), PillEmphasis::expanded);
  EXPECT_EQ(surface().moves.back().duration, Seconds::zero());
}

TEST_F(PillControllerTest, AHiddenPillHasNoWindow) {
  defaults_.setBoolean("pillHidden", true);
  pill();
  EXPECT_TRUE(desktop_.surfaces.empty());
  EXPECT_EQ(pill().windowFrame(), std::nullopt);
}

TEST_F(PillControllerTest, HidingTakesTheWindowAwayAndShowingBringsItBackInItsPlace) {
  pill();
  defaults_.setBoolean("pillHidden", true);
  pill().rebuild(false);
  EXPECT_EQ(desktop_.surface(), nullptr);
  EXPECT_EQ(pill().windowFrame(), std::nullopt);
  defaults_.setBoolean("pillHidden", false);
  pill().rebuild(false);
  ASSERT_EQ(desktop_.surfaces.size(), 2U);
  EXPECT_EQ(pill().windowFrame(), scoreFrame);
}

TEST_F(PillControllerTest, WhatChangesWhileHiddenIsShownAfterwards) {
  pill();
  defaults_.setBoolean("pillHidden", true);
  pill().rebuild(false);
  show(alert(), PillEmphasis::expanded);
  EXPECT_EQ(desktop_.surface(), nullptr);
  defaults_.setBoolean("pillHidden", false);
  pill().rebuild(true);
  EXPECT_EQ(surface().moves, (std::vector<Move>{{alertFrame, Seconds::zero()}}));
}

TEST_F(PillControllerTest, ShowingTheSameAgainWithoutAWindowTriesAnew) {
  defaults_.setBoolean("pillHidden", true);
  pill();
  defaults_.setBoolean("pillHidden", false);
  show(score(), PillEmphasis::none);
  EXPECT_EQ(pill().windowFrame(), scoreFrame);
}

TEST_F(PillControllerTest, WithoutAScreenThereIsNoWindowUntilOneComes) {
  pill();
  const auto screens = desktop_.attachedScreens;
  desktop_.attachedScreens.clear();
  desktop_.screensChanged.notify();
  EXPECT_EQ(desktop_.surface(), nullptr);
  desktop_.attachedScreens = screens;
  desktop_.screensChanged.notify();
  EXPECT_EQ(pill().windowFrame(), scoreFrame);
}

TEST_F(PillControllerTest, FollowsTheFirstScreenAtOnce) {
  pill();
  desktop_.attachedScreens.insert(desktop_.attachedScreens.begin(),
                                  FakeDesktop::screen({1440, 100, 1000, 600}, 30));
  desktop_.screensChanged.notify();
  EXPECT_EQ(surface().moves.back(),
            (Move{{1940 - scoreWidth / 2, 670, scoreWidth, 30}, Seconds::zero()}));
}

TEST_F(PillControllerTest, TheBarsHeightIsWhatTheScreensTopEdgeKeeps) {
  desktop_.attachedScreens = {FakeDesktop::screen({0, 0, 1440, 900}, 28)};
  desktop_.attachedScreens.front().info.menuBarHeight = 99;
  pill();
  EXPECT_EQ(pill().windowFrame()->height, 28);
}

TEST_F(PillControllerTest, WithoutABarThePillHasAHeightOfItsOwn) {
  desktop_.attachedScreens = {FakeDesktop::screen({0, 0, 1440, 900}, 0)};
  pill();
  EXPECT_EQ(pill().windowFrame(), scoreFrame);
}

TEST_F(PillControllerTest, OnAScreenWithAHousingTheWindowSpansBothWings) {
  auto screen = FakeDesktop::screen({0, 0, 1500, 900}, 32);
  screen.info.safeAreaTop = 32;
  screen.info.auxiliaryTopLeftArea = Rect{0, 868, 650, 32};
  screen.info.auxiliaryTopRightArea = Rect{850, 868, 650, 32};
  desktop_.attachedScreens = {screen};
  pill();
  // The dot on the left; the score, 5 x 6.5 rounded up, on the right.
  EXPECT_EQ(pill().windowFrame(), (Rect{620, 868, 30 + 200 + 57, 32}));
  EXPECT_EQ(pill().view().layout(),
            (PillLayout{PillLayout::Notch{{0, 0, 30, 32}, {230, 0, 57, 32}, {30, 0, 200, 32}}}));
}

TEST_F(PillControllerTest, CapturesShowThePillOnlyWhenAllowed) {
  pill();
  EXPECT_EQ(surface().readable, false);
  defaults_.setBoolean("showInScreenShares", true);
  pill().rebuild(false);
  EXPECT_EQ(surface().readable, true);
}

TEST_F(PillControllerTest, ComesToTheFrontWithEveryRebuild) {
  pill().rebuild(true);
  EXPECT_EQ(surface().ordersFront, 2);
  EXPECT_EQ(surface().moves.back().duration, Seconds(0.2));
}

TEST_F(PillControllerTest, AClickOpensThePanel) {
  pill();
  surface().client->click();
  int opened = 0;
  pill().onOpenPanel = [&] { ++opened; };
  surface().client->click();
  EXPECT_EQ(opened, 1);
}

TEST_F(PillControllerTest, TakesItsWindowAlong) {
  pill();
  pill_.reset();
  EXPECT_EQ(desktop_.surface(), nullptr);
  desktop_.screensChanged.notify();
  EXPECT_EQ(desktop_.surfaces.size(), 1U);
}

TEST_F(PillControllerTest, GrowingDownKeepsEveryTopEdge) {
  EXPECT_EQ(PillController::grownDown({PillLayout::Drawn{{10, 100, 50, 24}}}, 16),
            (PillLayout{PillLayout::Drawn{{10, 84, 50, 40}}}));
  EXPECT_EQ(PillController::grownDown(
                {PillLayout::Notch{{0, 100, 50, 24}, {80, 101, 60, 25}, {50, 102, 30, 26}}}, 16),
            (PillLayout{PillLayout::Notch{{0, 84, 50, 40}, {80, 85, 60, 41}, {50, 86, 30, 42}}}));
}

}  // namespace
}  // namespace kestrow
