// The port for the desktop around the program: its screens, its power events, its settings.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"
#include "Kestrow/Platform/PanelSurface.hpp"
#include "Kestrow/Platform/PillSurface.hpp"
#include "KestrowCore/Geometry.hpp"
#include "KestrowCore/ScreenGeometry.hpp"
#include "KestrowCore/Subscription.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrow {

// A screen, and the part of it that the desktop's bars leave free.
struct Screen {
  ScreenInfo info;
  Rect visibleFrame;
  bool operator==(const Screen&) const = default;
};

class Desktop {
 public:
  virtual ~Desktop() = default;

  // The attached screens, the one with the desktop's bar first. May be empty.
  virtual std::vector<Screen> screens() const = 0;
  // The one with the window that has the keyboard; nothing when the desktop can't tell.
  virtual std::optional<Screen> mainScreen() const = 0;
  virtual Subscription onScreensChanged(std::function<void()> action) = 0;

  virtual std::unique_ptr<PillSurface> makePillSurface(PillSurfaceClient& client) = 0;
  virtual std::unique_ptr<PanelSurface> makePanelSurface(PanelSurfaceClient& client) = 0;
  virtual TextMeasurer& textMeasurer() = 0;

  virtual bool reduceMotion() const = 0;
  virtual Subscription onReduceMotionChanged(std::function<void()> action) = 0;

  // Speaks the text through assistive technology, with high priority.
  virtual void announce(std::string_view text) = 0;

  // Whether windows can be kept out of screen captures here.
  virtual bool canExcludeFromCaptures() const = 0;

  virtual Subscription onWillSleep(std::function<void()> action) = 0;
  virtual Subscription onDidWake(std::function<void()> action) = 0;
  // The user opened the program again while it runs.
  virtual Subscription onReopen(std::function<void()> action) = 0;
  // The wall clock was set, or the time zone or locale changed.
  virtual Subscription onClockChanged(std::function<void()> action) = 0;

  // Writes the line to the system's log.
  virtual void log(std::string_view line) = 0;
  virtual void quit() = 0;
};

}  // namespace kestrow
