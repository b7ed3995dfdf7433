#include "Kestrow/PillView.hpp"
#include "Tests/Kestrow/PillViewFixture.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using records::liveContent;
using Status = PillContent::Status;

constexpr RGB grey{0.55, 0.55, 0.55};

PillContent withStatus(Status status) {
  PillContent content = liveContent();
  content.status = status;
  return content;
}

DotAppearance expectedDot(const RGB& color, double radius, double opacity, bool pulses) {
  return {.frame = {},
          .cornerRadius = 3,
          .color = {color, 1},
          .shadowColor = {color, 1},
          .shadowRadius = radius,
          .shadowOpacity = opacity,
          .pulses = pulses};
}

TEST_F(PillViewTest, TheDotTellsTheState) {
  const auto liveDot = expectedDot(ball, 5, 1, true);
  const auto amberDot = expectedDot(amber, 3, 0.6, false);
  const auto greyDot = expectedDot(grey, 3, 0, false);
  const std::vector<std::pair<Status, DotAppearance>> expected{
      {Status::live, liveDot},        {Status::inningsBreak, amberDot},
      {Status::notStarted, amberDot}, {Status::countdown, amberDot},
      {Status::finished, greyDot},    {Status::pickMatch, greyDot},
      {Status::loading, greyDot},     {Status::unavailable, greyDot}};
  layOut(300);
  for (const auto& [status, appearance] : expected) {
    view_.setContent(withStatus(status));
    auto dot = view_.dot();
    ASSERT_TRUE(dot) << static_cast<int>(status);
    EXPECT_EQ(dot->frame.width, 6);
    EXPECT_EQ(dot->frame.height, 6);
    dot->frame = {};
    EXPECT_EQ(*dot, appearance) << static_cast<int>(status);
  }
}

TEST_F(PillViewTest, TheDotOfDataThatIsNotCurrentIsGreyAndStill) {
  layOut(300);
  for (const auto status :
       {Status::live, Status::inningsBreak, Status::notStarted, Status::countdown}) {
    for (const bool isSample : {true, false}) {
      auto content = withStatus(status);
      content.isSample = isSample;
      content.isStale = !isSample;
      view_.setContent(content);
      auto dot = view_.dot().value();
      dot.frame = {};
      EXPECT_EQ(dot, expectedDot(grey, 3, 0, false));
    }
  }
}

TEST_F(PillViewTest, TheDotSitsInTheMiddleOfItsElement) {
  layOut(180);
  EXPECT_EQ(described(view_.dot()->frame), described(Rect{(180 - liveWidth) * 0.5, 9, 6, 6}));
}

TEST_F(PillViewTest, AnAlertHasNoDot) {
  layOut(180);
  view_.setContent(PillContent::boom("SIX!", "MI"));
  EXPECT_EQ(view_.dot(), std::nullopt);
}

TEST_F(PillViewTest, AThemeLightsTheDotFromBehind) {
  layOut(180);
  view_.setTheme(TeamTheme::named("csk"));
  EXPECT_EQ(view_.dot()->shadowColor, (Color{RGB(0xF9CD05), 1}));
  EXPECT_EQ(view_.dot()->color, (Color{ball, 1}));
}

TEST_F(PillViewTest, WithReducedMotionTheLiveDotShinesWithoutPulsing) {
  desktop_.reducesMotion = true;
  layOut(180);
  auto dot = view_.dot().value();
  dot.frame = {};
  EXPECT_EQ(dot, expectedDot(ball, 5, 1, false));
}

TEST_F(PillViewTest, ReducedMotionTakesEffectWhileThePillIsShown) {
  const auto record = std::make_shared<PillSurfaceRecord>();
  RecordingPillSurface surface(record);
  layOut(180);
  view_.setSurface(&surface);
  EXPECT_TRUE(record->dot->pulses);
  desktop_.reducesMotion = true;
  desktop_.reduceMotionChanged.notify();
  EXPECT_FALSE(record->dot->pulses);
  desktop_.reducesMotion = false;
  desktop_.reduceMotionChanged.notify();
  EXPECT_TRUE(record->dot->pulses);
}

}  // namespace
}  // namespace kestrow
