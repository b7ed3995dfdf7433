#include "Kestrow/AppKit/StatusDot.hpp"

#include <cmath>

#include "Kestrow/AppKit/AppKitText.hpp"
#include "Kestrow/AppKit/Coordinates.hpp"

namespace kestrow::appkit {

namespace {

NSString* const pulseKey = @"pulse";

// Own layers glide to every new value unless they are told not to.
class WithoutImplicitAnimations {
 public:
  WithoutImplicitAnimations() {
    [CATransaction begin];
    [CATransaction setDisableActions:YES];
  }
  WithoutImplicitAnimations(const WithoutImplicitAnimations&) = delete;
  WithoutImplicitAnimations& operator=(const WithoutImplicitAnimations&) = delete;
  ~WithoutImplicitAnimations() { [CATransaction commit]; }
};

CABasicAnimation* fade(NSString* keyPath, double to) {
  CABasicAnimation* animation = [CABasicAnimation animationWithKeyPath:keyPath];
  animation.fromValue = @1.0;
  animation.toValue = @(to);
  animation.duration = Pulse::duration.count();
  return animation;
}

CAAnimationGroup* pulse() {
  CAAnimationGroup* group = [CAAnimationGroup animation];
  group.animations =
      @[ fade(@"opacity", Pulse::opacityTo), fade(@"shadowOpacity", Pulse::shadowOpacityTo) ];
  group.duration = Pulse::duration.count();
  group.autoreverses = YES;
  group.repeatCount = HUGE_VALF;
  group.timingFunction =
      [CAMediaTimingFunction functionWithName:kCAMediaTimingFunctionEaseInEaseOut];
  return group;
}

}  // namespace

StatusDot::StatusDot() : layer_([CALayer layer]) {
  layer_.shadowOffset = CGSizeMake(0, 0);
  layer_.hidden = YES;
}

void StatusDot::show(const std::optional<DotAppearance>& dot) {
  const WithoutImplicitAnimations transaction;
  pulses_ = dot && dot->pulses;
  layer_.hidden = !dot;
  if (!dot) {
    [layer_ removeAllAnimations];
    return;
  }
  layer_.frame = toNSRect(dot->frame);
  layer_.cornerRadius = dot->cornerRadius;
  layer_.backgroundColor = toNSColor(dot->color).CGColor;
  layer_.shadowColor = toNSColor(dot->shadowColor).CGColor;
  layer_.shadowRadius = dot->shadowRadius;
  layer_.shadowOpacity = static_cast<float>(dot->shadowOpacity);
  if (pulses_) {
    restorePulse();
  } else {
    [layer_ removeAnimationForKey:pulseKey];
  }
}

void StatusDot::restorePulse() {
  if (!pulses_ || [layer_ animationForKey:pulseKey] != nil) return;
  [layer_ addAnimation:pulse() forKey:pulseKey];
}

}  // namespace kestrow::appkit
