// Where the panel goes.
#include "Kestrow/PanelView.hpp"
#include "Tests/Support/FakeDesktop.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace kestrow {
namespace {

// 1440 x 900 with a bar of 24 at the top and a dock of 70 at the bottom.
std::vector<Screen> oneScreen() {
  auto screen = FakeDesktop::screen({0, 0, 1440, 900}, 24);
  screen.visibleFrame.y = 70;
  screen.visibleFrame.height -= 70;
  return {screen};
}

constexpr Rect pill{600, 876, 240, 24};

Rect frame(const std::optional<Rect>& anchor, double height,
           const std::vector<Screen>& screens = oneScreen(),
           const std::optional<Screen>& mainScreen = std::nullopt) {
  return PanelController::frameFor(screens, mainScreen, anchor, height);
}

TEST(PanelFrame, HangsSixPointsUnderThePillAndCentred) {
  EXPECT_EQ(frame(pill, 300), (Rect{550, 570, 340, 300}));
}

TEST(PanelFrame, FollowsAPillThatHasGrown) {
  EXPECT_EQ(frame(Rect{600, 860, 240, 40}, 300), (Rect{550, 554, 340, 300}));
}

TEST(PanelFrame, WithoutAPillItHangsUnderTheTopOfWhatIsFree) {
  EXPECT_EQ(frame(std::nullopt, 300), (Rect{550, 570, 340, 300}));
  auto screens = oneScreen();
  screens[0].visibleFrame = {100, 70, 1000, 800};
  EXPECT_EQ(frame(std::nullopt, 300, screens), (Rect{430, 564, 340, 300}));
}

TEST(PanelFrame, EndsEightPointsAboveTheBottomOfWhatIsFree) {
  // From 870, under the pill, to 78, above the dock.
  EXPECT_EQ(frame(pill, 792), (Rect{550, 78, 340, 792}));
  EXPECT_EQ(frame(pill, 793), (Rect{550, 78, 340, 792}));
  EXPECT_EQ(frame(pill, 22'000), (Rect{550, 78, 340, 792}));
}

TEST(PanelFrame, StaysEightPointsInsideTheRightEdge) {
  EXPECT_EQ(frame(Rect{1300, 876, 140, 24}, 300).maxX(), 1432);
  // The last place that is still centred.
  EXPECT_EQ(frame(Rect{1162, 876, 200, 24}, 300).x, 1092);
  EXPECT_EQ(frame(Rect{1163, 876, 200, 24}, 300).x, 1092);
}

TEST(PanelFrame, StaysEightPointsInsideTheLeftEdge) {
  EXPECT_EQ(frame(Rect{0, 876, 100, 24}, 300).x, 8);
  EXPECT_EQ(frame(Rect{79, 876, 200, 24}, 300).x, 9);
}

TEST(PanelFrame, OnAScreenNarrowerThanThePanelTheLeftEdgeWins) {
  EXPECT_EQ(frame(Rect{100, 476, 100, 24}, 100, {FakeDesktop::screen({0, 0, 300, 500}, 24)}).x, 8);
}

TEST(PanelFrame, WithoutRoomThereIsNoHeightRatherThanLess) {
  const auto place = frame(Rect{600, 60, 240, 24}, 300);
  EXPECT_EQ(place.height, 0);
  EXPECT_EQ(place.y, 54);
}

TEST(PanelFrame, IsOnTheScreenThatHoldsMostOfThePill) {
  const std::vector<Screen> screens{FakeDesktop::screen({0, 0, 1440, 900}, 24),
                                    FakeDesktop::screen({1440, 100, 1000, 800}, 30)};
  EXPECT_EQ(frame(Rect{1900, 870, 200, 30}, 300, screens), (Rect{1830, 564, 340, 300}));
  // One point more on the second screen than on the first.
  EXPECT_EQ(frame(Rect{1339, 870, 203, 30}, 300, screens).x, 1448);
  EXPECT_EQ(frame(Rect{1338, 870, 203, 30}, 300, screens).x, 1092);
}

TEST(PanelFrame, APillOnNoScreenIsTakenToBeOnTheFirst) {
  EXPECT_EQ(frame(Rect{5000, 876, 200, 24}, 300), (Rect{1092, 570, 340, 300}));
  // Touching is not being on it.
  const std::vector<Screen> screens{FakeDesktop::screen({0, 0, 1000, 900}, 24),
                                    FakeDesktop::screen({1000, 0, 1000, 900}, 24)};
  EXPECT_EQ(frame(Rect{2000, 850, 200, 24}, 300, screens).x, 652);
}

TEST(PanelFrame, WithoutAPillItIsOnTheScreenWithTheKeyboard) {
  const std::vector<Screen> screens{FakeDesktop::screen({0, 0, 1000, 900}, 24),
                                    FakeDesktop::screen({1000, 100, 2000, 800}, 30)};
  EXPECT_EQ(frame(std::nullopt, 300, screens, screens[1]), (Rect{1830, 564, 340, 300}));
  EXPECT_EQ(frame(std::nullopt, 300, screens, screens[0]), (Rect{330, 570, 340, 300}));
}

TEST(PanelFrame, ThePillsScreenComesBeforeTheOneWithTheKeyboard) {
  const std::vector<Screen> screens{FakeDesktop::screen({0, 0, 1000, 900}, 24),
                                    FakeDesktop::screen({1000, 0, 1000, 900}, 24)};
  EXPECT_EQ(frame(Rect{400, 876, 200, 24}, 300, screens, screens[1]).x, 330);
  // A pill that is on none leaves it to the keyboard.
  EXPECT_EQ(frame(Rect{2000, 876, 200, 24}, 300, screens, screens[1]).x, 1652);
}

TEST(PanelFrame, WithoutAPillAFurtherScreenDoesNotMatter) {
  const std::vector<Screen> screens{FakeDesktop::screen({0, 0, 1000, 900}, 24),
                                    FakeDesktop::screen({1000, 0, 2000, 1900}, 24)};
  EXPECT_EQ(frame(std::nullopt, 300, screens), (Rect{330, 570, 340, 300}));
}

TEST(PanelFrame, WithoutAnyScreenAUsualOneIsAssumed) {
  EXPECT_EQ(frame(std::nullopt, 300, {}), (Rect{550, 594, 340, 300}));
  EXPECT_EQ(frame(Rect{0, 876, 100, 24}, 2000, {}), (Rect{8, 8, 340, 862}));
}

}  // namespace
}  // namespace kestrow
