// The pill's window: a borderless panel that never takes the keyboard and never makes the program
// the active one.
#pragma once

#import "Kestrow/AppKit/PillView.hpp"
#include "Kestrow/AppKit/StatusDot.hpp"
#include "Kestrow/Platform/PillSurface.hpp"
#include "KestrowCore/Subscription.hpp"

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>
#include <vector>

namespace kestrow::appkit {

// Not on the screen until it is ordered to the front. The client outlives it.
class AppKitPillWindow final : public PillSurface {
 public:
  explicit AppKitPillWindow(PillSurfaceClient& client);
  AppKitPillWindow(const AppKitPillWindow&) = delete;
  AppKitPillWindow& operator=(const AppKitPillWindow&) = delete;
  ~AppKitPillWindow() override;

  // Where it is, or where it is moving to.
  Rect frame() const override { return target_; }
  void setFrame(const Rect& frame, Seconds duration) override;
  void setDot(const std::optional<DotAppearance>& dot) override;
  void setNeedsDisplay() override;
  void accessibilityLabelChanged() override;
  void setSharing(bool readable) override;
  void orderFront() override;

 private:
  PillSurfaceClient& client_;
  StatusDot dot_;
  KestrowPillView* _Nonnull view_;
  NSPanel* _Nonnull panel_;
  Rect target_;
  std::shared_ptr<PillMove> move_;  // the latest; its end may come after this object
  std::vector<Subscription> maybeSeenAgain_;
};

}  // namespace kestrow::appkit
