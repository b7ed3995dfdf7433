#include "Kestrow/Qt/PanelLog.hpp"
#include "Tests/Qt/QtPanelFixture.hpp"

#include <gtest/gtest.h>

namespace kestrow::qt {
namespace {

PanelNode lines(std::vector<std::string> texts, double spacing = 6) {
  return {.id = "log",
          .kind = PanelLines{.name = "Key moments", .spacing = spacing, .lines = std::move(texts)}};
}

// A log as wide as the panel shows it.
class PanelLogTest : public testing::Test {
 protected:
  int apply(const PanelNode& node) {
    log_.apply(node);
    const int height = log_.heightFor(308);
    log_.resize(308, height);
    return height;
  }
  LogLines log_{nullptr};
};

TEST_F(PanelLogTest, LinesStandUnderEachOtherWithTheirSpacing) {
  const int one = apply(lines({"a"}));
  EXPECT_EQ(apply(lines({"a", "b", "c"})), 3 * one + 12);
  EXPECT_EQ(log_.lineRect(0), QRect(0, 0, 308, one));
  EXPECT_EQ(log_.lineRect(2), QRect(0, 2 * (one + 6), 308, one));
}

TEST_F(PanelLogTest, ALongLineWrapsAlsoInsideAWord) {
  const int one = apply(lines({"a"}));
  const int both = apply(lines({std::string(100, 'w'), "b"}));
  EXPECT_EQ(both, log_.lineRect(0).height() + 6 + one);
  EXPECT_GT(log_.lineRect(0).height(), 2 * one);
  EXPECT_EQ(log_.lineRect(1).top(), log_.lineRect(0).height() + 6);
}

TEST_F(PanelLogTest, LinesThatComeInAtTheTopMoveTheOthersDown) {
  const int one = apply(lines({"b", "a"}));
  EXPECT_GT(apply(lines({std::string(100, 'w'), "b", "a"})), one);
  EXPECT_EQ(log_.lineCount(), 3);
  EXPECT_EQ(log_.lineText(1), "b");
  EXPECT_EQ(log_.lineRect(1).top(), log_.lineRect(0).height() + 6);
}

TEST_F(PanelLogTest, ALineThatChangedInTheMiddleIsMeasuredAnew) {
  apply(lines({"c", "b", "a"}));
  const int below = log_.lineRect(2).top();
  apply(lines({"c", std::string(100, 'w'), "a"}));
  EXPECT_GT(log_.lineRect(2).top(), below);
  EXPECT_EQ(log_.lineText(0), "c");
}

TEST_F(PanelLogTest, FewerLinesLeaveTheRest) {
  apply(lines({"c", "b", "a"}));
  apply(lines({"a"}));
  EXPECT_EQ(log_.lineCount(), 1);
  EXPECT_EQ(log_.lineText(0), "a");
  EXPECT_EQ(apply(lines({})), 0);
}

TEST_F(PanelLogTest, FindsTheLineAtAHeight) {
  const int one = apply(lines({"a"}));
  apply(lines({"c", "b", "a"}));
  EXPECT_EQ(log_.lineAt(-5), 0);
  EXPECT_EQ(log_.lineAt(0), 0);
  EXPECT_EQ(log_.lineAt(one + 5), 0);
  EXPECT_EQ(log_.lineAt(one + 6), 1);
  EXPECT_EQ(log_.lineAt(10'000), 2);
}

TEST_F(PanelLogTest, AnotherWidthWrapsAnew) {
  const int narrow = apply(lines({"WICKET — a name that takes most of a line (MI)"}));
  EXPECT_GT(log_.heightFor(100), narrow);
  EXPECT_EQ(log_.heightFor(308), narrow);
}

TEST_F(PanelLogTest, DrawsTheLinesInSight) {
  std::vector<std::string> texts(1000, "WICKET — R Sharma (MI)");
  apply(lines(texts));
  const QRect part(0, log_.lineRect(500).top(), 308, 60);
  const auto picture = log_.grab(part).toImage();
  int ink = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) ink += qGray(picture.pixel(x, y)) > 250 ? 0 : 1;
  }
  EXPECT_GT(ink, 0);
}

}  // namespace
}  // namespace kestrow::qt
