#include "Kestrow/AppKit/StatusDot.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace kestrow::appkit {
namespace {

static_assert(Pulse::opacityTo == 0.6);
static_assert(Pulse::shadowOpacityTo == 0.2);
static_assert(Pulse::duration == Seconds(0.8));

DotAppearance dot(bool pulses) {
  return {.frame = {10, 9, 6, 6},
          .cornerRadius = 3,
          .color = {.rgb = {1, 0, 0}},
          .shadowColor = {.rgb = {0, 1, 0}},
          .shadowRadius = 5,
          .shadowOpacity = 1,
          .pulses = pulses};
}

CAAnimationGroup* pulseOf(const StatusDot& dot) {
  return static_cast<CAAnimationGroup*>([dot.layer() animationForKey:@"pulse"]);
}

void expectFade(CAAnimation* animation, NSString* keyPath, double to) {
  ASSERT_TRUE([animation isKindOfClass:CABasicAnimation.class]);
  auto* fade = static_cast<CABasicAnimation*>(animation);
  EXPECT_TRUE([fade.keyPath isEqual:keyPath]);
  EXPECT_EQ(static_cast<NSNumber*>(fade.fromValue).doubleValue, 1);
  EXPECT_EQ(static_cast<NSNumber*>(fade.toValue).doubleValue, to);
  EXPECT_EQ(fade.duration, 0.8);
}

TEST(StatusDotOnAMac, IsARoundGlowingLayer) {
  StatusDot shown;
  EXPECT_TRUE(shown.layer().hidden);
  shown.show(dot(false));
  CALayer* layer = shown.layer();
  EXPECT_FALSE(layer.hidden);
  EXPECT_EQ(layer.frame.origin.x, 10);
  EXPECT_EQ(layer.frame.size.width, 6);
  EXPECT_EQ(layer.cornerRadius, 3);
  EXPECT_EQ(layer.shadowRadius, 5);
  EXPECT_EQ(layer.shadowOpacity, 1);
  EXPECT_EQ(layer.shadowOffset.width, 0);
  EXPECT_EQ(layer.shadowOffset.height, 0);
  EXPECT_EQ(pulseOf(shown), nil);
}

TEST(StatusDotOnAMac, PulsesThereAndBackWithoutEnd) {
  StatusDot shown;
  shown.show(dot(true));
  CAAnimationGroup* pulse = pulseOf(shown);
  ASSERT_NE(pulse, nil);
  EXPECT_EQ(pulse.duration, 0.8);
  EXPECT_TRUE(pulse.autoreverses);
  EXPECT_TRUE(std::isinf(pulse.repeatCount));
  EXPECT_NE(pulse.timingFunction, nil);
  ASSERT_EQ(pulse.animations.count, 2U);
  expectFade(pulse.animations[0], @"opacity", 0.6);
  expectFade(pulse.animations[1], @"shadowOpacity", 0.2);
}

TEST(StatusDotOnAMac, StandsStillOrGoesWithoutItsPulse) {
  StatusDot shown;
  shown.show(dot(true));
  shown.show(dot(false));
  EXPECT_EQ(pulseOf(shown), nil);
  shown.show(dot(true));
  shown.show(std::nullopt);
  EXPECT_TRUE(shown.layer().hidden);
  EXPECT_EQ(shown.layer().animationKeys.count, 0U);
}

TEST(StatusDotOnAMac, GetsAPulseBackThatTheSystemTookAway) {
  StatusDot shown;
  shown.show(dot(true));
  [shown.layer() removeAllAnimations];
  shown.restorePulse();
  EXPECT_NE(pulseOf(shown), nil);
  shown.show(dot(false));
  shown.restorePulse();
  EXPECT_EQ(pulseOf(shown), nil);
}

}  // namespace
}  // namespace kestrow::appkit
