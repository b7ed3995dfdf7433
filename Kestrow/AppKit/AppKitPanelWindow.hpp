// The panel under AppKit: a sheet that blurs what is behind it, with the controls in a scroll view.
#pragma once

#include "Kestrow/AppKit/EventMonitor.hpp"
#include "Kestrow/AppKit/PanelColumn.hpp"
#include "Kestrow/Platform/PanelSurface.hpp"

#import <AppKit/AppKit.h>

#include <optional>

namespace kestrow::appkit {

// Not on the screen until it is shown. The client outlives it.
class AppKitPanelWindow final : public PanelSurface {
 public:
  explicit AppKitPanelWindow(PanelSurfaceClient& client);
  AppKitPanelWindow(const AppKitPanelWindow&) = delete;
  AppKitPanelWindow& operator=(const AppKitPanelWindow&) = delete;
  ~AppKitPanelWindow() override;

  void setContent(const PanelNode& root) override;
  double fittingHeight() override;
  void setFrame(const Rect& frame) override;
  bool isVisible() const override;
  bool isKey() const override;
  void scrollToTop() override;
  void showAndMakeKey() override;
  void orderOut() override;
  void installMonitors() override;
  void removeMonitors() override;

 private:
  PanelSurfaceClient& client_;
  PanelColumn column_;
  NSPanel* _Nonnull panel_;
  NSScrollView* _Nonnull scroll_;
  id<NSWindowDelegate> _Nonnull delegate_;  // windows do not keep their delegates
  std::optional<EventMonitor> outsideClicks_;
  std::optional<EventMonitor> escapeKey_;
};

}  // namespace kestrow::appkit
