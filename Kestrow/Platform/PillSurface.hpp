// The port for the pill's window: what shows the pill, its status dot and its accessibility
// element, and reports its click.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"
#include "KestrowCore/Geometry.hpp"
#include "KestrowCore/MainThread.hpp"

#include <memory>
#include <optional>
#include <string>

namespace kestrow {

// The status dot, drawn by the surface above the pill's picture so that its pulse repaints nothing
// else. Coordinates in the surface, y upwards.
struct DotAppearance {
  Rect frame;
  double cornerRadius = 0;
  Color color;
  Color shadowColor;
  double shadowRadius = 0;
  double shadowOpacity = 0;
  bool pulses = false;
  bool operator==(const DotAppearance&) const = default;
};

// One beat of the pulse: there in `duration`, back in `duration`, without end, easing in and out.
struct Pulse {
  static constexpr double opacityTo = 0.6;        // from 1
  static constexpr double shadowOpacityTo = 0.2;  // from 1
  static constexpr Seconds duration{0.8};
};

// What the surface asks of the pill. Outlives the surface.
class PillSurfaceClient {
 public:
  virtual ~PillSurfaceClient() = default;
  // Draws the pill; `bounds` is the surface's own rectangle, in coordinates of the frame that it
  // has or is moving to, so that the content stays in its place; `scale` is its pixels for a point.
  virtual void draw(Canvas& canvas, const Rect& bounds, double scale) = 0;
  // A mouse button went down on it, or assistive technology pressed it.
  virtual void click() = 0;
  virtual std::string accessibilityLabel() const = 0;
};

// A borderless window above everything, on every workspace, that never takes the focus and answers
// the first click. Destroying it takes it off the screen.
class PillSurface {
 public:
  virtual ~PillSurface() = default;

  virtual Rect frame() const = 0;  // in screen coordinates
  // Moves there at once, or over `duration` when that is more than zero.
  virtual void setFrame(const Rect& frame, Seconds duration) = 0;
  // The dot to show; nothing hides it.
  virtual void setDot(const std::optional<DotAppearance>& dot) = 0;
  virtual void setNeedsDisplay() = 0;
  virtual void accessibilityLabelChanged() = 0;
  // Whether screen captures and shares may show it; without effect where the desktop can't tell
  // (see Desktop::canExcludeFromCaptures).
  virtual void setSharing(bool readable) = 0;
  virtual void orderFront() = 0;
};

}  // namespace kestrow
