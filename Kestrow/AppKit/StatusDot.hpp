// The pill's status dot as a layer. The system's compositor runs its pulse, so the program sleeps.
#pragma once

#include "Kestrow/Platform/PillSurface.hpp"

#import <QuartzCore/QuartzCore.h>

#include <optional>

namespace kestrow::appkit {

class StatusDot {
 public:
  StatusDot();

  // To be put above what the pill draws.
  CALayer* _Nonnull layer() const { return layer_; }

  // A pulse that goes on keeps its beat.
  void show(const std::optional<DotAppearance>& dot);

  // Layers lose their animations when they leave the screen, and may when the system takes the
  // window out of sight: starts the pulse again where there is to be one. One that still runs keeps
  // its beat.
  void restorePulse();

 private:
  CALayer* _Nonnull layer_;
  bool pulses_ = false;
};

}  // namespace kestrow::appkit
