// A desktop without windows: its screens, switches and signals are set by the test, and what is
// asked of it is written down.
#pragma once

#include "Kestrow/Platform/Desktop.hpp"
#include "Kestrow/Platform/PanelSurface.hpp"
#include "Kestrow/Platform/PillSurface.hpp"
#include "Kestrow/Platform/UserDefaults.hpp"
#include "Tests/Support/RecordingCanvas.hpp"
#include "Tests/Support/RecordingPanelSurface.hpp"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrow {

// What became of one pill surface; stays after the surface has gone.
struct PillSurfaceRecord {
  struct Move {
    Rect frame;
    Seconds duration{};
    bool operator==(const Move&) const = default;
  };

  PillSurfaceClient* client = nullptr;
  bool exists = true;
  Rect frame;
  std::vector<Move> moves;
  std::optional<DotAppearance> dot;
  int dotsSet = 0;
  int redraws = 0;
  int labelChanges = 0;
  std::optional<bool> readable;
  int ordersFront = 0;
};

class RecordingPillSurface final : public PillSurface {
 public:
  explicit RecordingPillSurface(std::shared_ptr<PillSurfaceRecord> record)
      : record_(std::move(record)) {}
  RecordingPillSurface(const RecordingPillSurface&) = delete;
  RecordingPillSurface& operator=(const RecordingPillSurface&) = delete;
  ~RecordingPillSurface() override { record_->exists = false; }

  Rect frame() const override { return record_->frame; }
  void setFrame(const Rect& frame, Seconds duration) override {
    record_->frame = frame;
    record_->moves.push_back({frame, duration});
  }
  void setDot(const std::optional<DotAppearance>& dot) override {
    record_->dot = dot;
    ++record_->dotsSet;
  }
  void setNeedsDisplay() override { ++record_->redraws; }
  void accessibilityLabelChanged() override { ++record_->labelChanges; }
  void setSharing(bool readable) override { record_->readable = readable; }
  void orderFront() override { ++record_->ordersFront; }

 private:
  std::shared_ptr<PillSurfaceRecord> record_;
};

class FakeDesktop : public Desktop {
 public:
  // A screen whose bar at the top is `barHeight` points high.
  static Screen screen(const Rect& frame, double barHeight) {
    return {.info = {.frame = frame,
                     .auxiliaryTopLeftArea = {},
                     .auxiliaryTopRightArea = {},
                     .safeAreaTop = 0,
                     .menuBarHeight = barHeight},
            .visibleFrame = {frame.x, frame.y, frame.width, frame.height - barHeight}};
  }

  std::vector<Screen> attachedScreens{screen({0, 0, 1440, 900}, 24)};
  std::optional<Screen> screenWithKeyboard;
  bool reducesMotion = false;
  bool excludesFromCaptures = false;
  std::vector<std::shared_ptr<PillSurfaceRecord>> surfaces;  // in the order of making
  std::vector<std::shared_ptr<PanelSurfaceRecord>> panels;   // likewise
  std::vector<std::string> announcements;
  std::vector<std::string> logLines;
  int quits = 0;
  FixedMeasurer measurer;
  Signal screensChanged;
  Signal reduceMotionChanged;
  Signal willSleep;
  Signal didWake;
  Signal reopen;
  Signal clockChanged;

  // The surface that is on the screen; null while there is none.
  std::shared_ptr<PillSurfaceRecord> surface() const {
    return surfaces.empty() || !surfaces.back()->exists ? nullptr : surfaces.back();
  }

  std::vector<Screen> screens() const override { return attachedScreens; }
  std::optional<Screen> mainScreen() const override { return screenWithKeyboard; }
  Subscription onScreensChanged(std::function<void()> action) override {
    return screensChanged.subscribe(std::move(action));
  }
  std::unique_ptr<PillSurface> makePillSurface(PillSurfaceClient& client) override {
    surfaces.push_back(std::make_shared<PillSurfaceRecord>());
    surfaces.back()->client = &client;
    return std::make_unique<RecordingPillSurface>(surfaces.back());
  }
  std::unique_ptr<PanelSurface> makePanelSurface(PanelSurfaceClient& client) override {
    panels.push_back(std::make_shared<PanelSurfaceRecord>());
    panels.back()->client = &client;
    return std::make_unique<RecordingPanelSurface>(panels.back());
  }
  TextMeasurer& textMeasurer() override { return measurer; }
  bool reduceMotion() const override { return reducesMotion; }
  Subscription onReduceMotionChanged(std::function<void()> action) override {
    return reduceMotionChanged.subscribe(std::move(action));
  }
  void announce(std::string_view text) override { announcements.emplace_back(text); }
  bool canExcludeFromCaptures() const override { return excludesFromCaptures; }
  Subscription onWillSleep(std::function<void()> action) override {
    return willSleep.subscribe(std::move(action));
  }
  Subscription onDidWake(std::function<void()> action) override {
    return didWake.subscribe(std::move(action));
  }
  Subscription onReopen(std::function<void()> action) override {
    return reopen.subscribe(std::move(action));
  }
  Subscription onClockChanged(std::function<void()> action) override {
    return clockChanged.subscribe(std::move(action));
  }
  void log(std::string_view line) override { logLines.emplace_back(line); }
  void quit() override { ++quits; }
};

// Switches that live as long as the test.
class FakeDefaults final : public UserDefaults {
 public:
  std::map<std::string, bool, std::less<>> values;

  bool boolean(std::string_view key) const override {
    const auto found = values.find(key);
    return found != values.end() && found->second;
  }
  void setBoolean(std::string_view key, bool value) override {
    values.insert_or_assign(std::string(key), value);
  }
};

}  // namespace kestrow
