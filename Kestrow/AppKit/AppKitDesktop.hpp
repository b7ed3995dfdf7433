// The macOS desktop behind the program's port.
#pragma once

#include "Kestrow/AppKit/AppKitText.hpp"
#include "Kestrow/AppKit/Application.hpp"
#include "Kestrow/Platform/Desktop.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrow::appkit {

// Main thread only. The application outlives it.
class AppKitDesktop final : public Desktop {
 public:
  explicit AppKitDesktop(Application& application);

  std::vector<Screen> screens() const override;
  std::optional<Screen> mainScreen() const override;
  Subscription onScreensChanged(std::function<void()> action) override;

  std::unique_ptr<PillSurface> makePillSurface(PillSurfaceClient& client) override;
  std::unique_ptr<PanelSurface> makePanelSurface(PanelSurfaceClient& client) override;
  TextMeasurer& textMeasurer() override { return measurer_; }

  bool reduceMotion() const override;
  Subscription onReduceMotionChanged(std::function<void()> action) override;
  void announce(std::string_view text) override;

  // Captures that take what the compositor offers leave such windows out; newer ones may not, as
  // the panel says.
  bool canExcludeFromCaptures() const override { return true; }

  Subscription onWillSleep(std::function<void()> action) override;
  Subscription onDidWake(std::function<void()> action) override;
  Subscription onReopen(std::function<void()> action) override;
  Subscription onClockChanged(std::function<void()> action) override;

  void log(std::string_view line) override;
  void quit() override;

 private:
  Application& application_;
  AppKitTextMeasurer measurer_;
};

}  // namespace kestrow::appkit
