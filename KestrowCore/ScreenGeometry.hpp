// Where the pill goes: in two wings beside a camera housing, or as one capsule at the top centre.
// Screen coordinates in points, y upwards.
#pragma once

#include "KestrowCore/Geometry.hpp"

#include <functional>
#include <optional>
#include <span>
#include <variant>

namespace kestrow {

struct ScreenInfo {
  Rect frame;
  // The free parts of the top band beside the camera housing, on screens that have one.
  std::optional<Rect> auxiliaryTopLeftArea;
  std::optional<Rect> auxiliaryTopRightArea;
  double safeAreaTop = 0;
  double menuBarHeight = 0;  // of the desktop's bar at the top edge; 0 when unknown
  bool operator==(const ScreenInfo&) const = default;
};

struct PillLayout {
  struct Notch {
    Rect left;
    Rect right;
    Rect notch;  // the housing between the wings
    bool operator==(const Notch&) const = default;
  };
  struct Drawn {
    Rect rect;
    bool operator==(const Drawn&) const = default;
  };
  std::variant<Notch, Drawn> form;

  Rect bounds() const;

  // The same form, every rectangle passed through the function.
  PillLayout map(const std::function<Rect(Rect)>& transform) const;

  bool operator==(const PillLayout&) const = default;
};

struct ScreenGeometry {
  static constexpr double padding = 12;
  static constexpr double maxWingWidth = 200;
  static constexpr double fallbackHeight = 24;

  // The first screen: the one with the desktop's bar.
  static std::optional<ScreenInfo> target(std::span<const ScreenInfo> screens);

  static std::optional<Rect> notchRect(const ScreenInfo& screen);

  static PillLayout layout(const ScreenInfo& screen, double leftTextWidth, double rightTextWidth,
                           double drawnTextWidth);

  // The room for content inside a pill or wing of this width.
  static double textWidth(double pillWidth);
};

}  // namespace kestrow
