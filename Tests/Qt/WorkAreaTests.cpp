#include "Kestrow/Qt/WorkArea.hpp"

#include <gtest/gtest.h>

#include <array>

namespace kestrow::qt {
namespace {

constexpr QRect left{0, 0, 1000, 800};
constexpr QRect right{1000, 0, 1000, 600};
constexpr QSize display{2000, 800};

QRect free(const QRect& screen, const Strut& strut) {
  return workArea(screen, display, std::array{strut});
}

TEST(WorkArea, WithoutBarsTheWholeScreenIsFree) {
  EXPECT_EQ(workArea(right, display, {}), right);
}

TEST(WorkArea, ABarAtTheTopTakesItsDepthFromTheScreenThatItIsOnOnly) {
  const Strut bar{.edge = Strut::Edge::top, .depth = 30, .start = 0, .end = 999};
  EXPECT_EQ(free(left, bar), QRect(0, 30, 1000, 770));
  EXPECT_EQ(free(right, bar), right);
}

TEST(WorkArea, ABarAcrossBothScreensTakesFromBoth) {
  const Strut bar{.edge = Strut::Edge::top, .depth = 24, .start = 0, .end = 1999};
  EXPECT_EQ(free(left, bar), QRect(0, 24, 1000, 776));
  EXPECT_EQ(free(right, bar), QRect(1000, 24, 1000, 576));
}

TEST(WorkArea, BarsAtTheSidesAndBottomTakeFromTheirEdges) {
  EXPECT_EQ(free(left, {.edge = Strut::Edge::left, .depth = 50, .start = 0, .end = 799}),
            QRect(50, 0, 950, 800));
  EXPECT_EQ(free(right, {.edge = Strut::Edge::right, .depth = 60, .start = 0, .end = 599}),
            QRect(1000, 0, 940, 600));
  EXPECT_EQ(free(left, {.edge = Strut::Edge::bottom, .depth = 40, .start = 0, .end = 999}),
            QRect(0, 0, 1000, 760));
}

TEST(WorkArea, AClaimIsCountedFromTheEdgeOfTheWholeDisplay) {
  // The shorter screen ends 200 pixels above the display's bottom edge.
  EXPECT_EQ(free(right, {.edge = Strut::Edge::bottom, .depth = 240, .start = 1000, .end = 1999}),
            QRect(1000, 0, 1000, 560));
  EXPECT_EQ(free(right, {.edge = Strut::Edge::bottom, .depth = 200, .start = 1000, .end = 1999}),
            right);
}

TEST(WorkArea, AClaimThroughAWholeScreenIsMeantForTheOneBehindIt) {
  const Strut bar{.edge = Strut::Edge::left, .depth = 1050, .start = 0, .end = 599};
  EXPECT_EQ(free(left, bar), left);
  EXPECT_EQ(free(right, bar), QRect(1050, 0, 950, 600));
}

TEST(WorkArea, OfTwoBarsAtOneEdgeTheDeeperCounts) {
  const std::array bars{Strut{.edge = Strut::Edge::top, .depth = 40, .start = 0, .end = 499},
                        Strut{.edge = Strut::Edge::top, .depth = 20, .start = 500, .end = 999}};
  EXPECT_EQ(workArea(left, display, bars), QRect(0, 40, 1000, 760));
}

}  // namespace
}  // namespace kestrow::qt
