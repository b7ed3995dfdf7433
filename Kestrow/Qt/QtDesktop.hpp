// The Linux desktop: X11 through Qt, and the services on the session and system buses.
#pragma once

#include "Kestrow/Platform/Desktop.hpp"
#include "Kestrow/Qt/ClockWatcher.hpp"
#include "Kestrow/Qt/QtPillWindow.hpp"
#include "Kestrow/Qt/QtText.hpp"
#include "Kestrow/Qt/ReduceMotionSetting.hpp"
#include "Kestrow/Qt/ScreenWatcher.hpp"
#include "Kestrow/Qt/SessionWatcher.hpp"
#include "Kestrow/Qt/SingleInstance.hpp"
#include "Kestrow/Qt/SleepWatcher.hpp"

#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrow::qt {

// Main thread only. Needs the application object before it; the instance outlives it.
class QtDesktop final : public Desktop {
 public:
  explicit QtDesktop(SingleInstance& instance);
  ~QtDesktop() override;

  // Calls the action when the pill's first picture is on its way to the screen, or soon where no
  // pill is painted. To be asked for once.
  void afterFirstPicture(std::function<void()> action);

  // Begins to watch the session, the desktop's settings and the machine's sleep: until then the
  // screen counts as seen, and motion as wanted. Connecting to the system's bus for it takes a
  // sixteenth of the start.
  void watch();

  std::vector<Screen> screens() const override;
  std::optional<Screen> mainScreen() const override { return ScreenWatcher::mainScreen(); }
  Subscription onScreensChanged(std::function<void()> action) override;

  std::unique_ptr<PillSurface> makePillSurface(PillSurfaceClient& client) override;
  std::unique_ptr<PanelSurface> makePanelSurface(PanelSurfaceClient& client) override;
  TextMeasurer& textMeasurer() override { return measurer_; }

  bool reduceMotion() const override { return motion_.isOn(); }
  Subscription onReduceMotionChanged(std::function<void()> action) override;
  void announce(std::string_view text) override;

  // X11 shows every window to every capture, and Wayland's portals capture whole screens.
  bool canExcludeFromCaptures() const override { return false; }

  Subscription onWillSleep(std::function<void()> action) override;
  Subscription onDidWake(std::function<void()> action) override;
  Subscription onReopen(std::function<void()> action) override;
  Subscription onClockChanged(std::function<void()> action) override;

  void log(std::string_view line) override;
  void quit() override;

 private:
  SingleInstance& instance_;
  QtTextMeasurer measurer_;
  ScreenWatcher screens_;
  SleepWatcher sleep_;
  SessionWatcher session_;
  ReduceMotionSetting motion_;
  ClockWatcher clock_;
  QPointer<QtPillWindow> pill_;
  Subscription seenChanged_;
  Subscription firstPainted_;
  QTimer begin_;
};

}  // namespace kestrow::qt
