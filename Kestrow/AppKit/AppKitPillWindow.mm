#include "Kestrow/AppKit/AppKitPillWindow.hpp"

#include "Kestrow/AppKit/Coordinates.hpp"
#include "Kestrow/AppKit/FloatingPanel.hpp"
#include "Kestrow/AppKit/Notifications.hpp"
#include "Kestrow/AppKit/Strings.hpp"

#include <algorithm>
#include <functional>

@interface KestrowPillWindow : NSPanel
@end

@implementation KestrowPillWindow

- (BOOL)canBecomeKeyWindow {
  return NO;
}

- (BOOL)canBecomeMainWindow {
  return NO;
}

// The system keeps windows out of the menu bar, which is where this one belongs.
- (NSRect)constrainFrameRect:(NSRect)frame toScreen:(nullable NSScreen*)screen {
  return frame;
}

@end

namespace kestrow::appkit {

namespace {

NSPanel* makePanel() {
  NSPanel* panel = [[KestrowPillWindow alloc] initWithContentRect:NSMakeRect(0, 0, 0, 0)
                                                        styleMask:floatingStyle
                                                          backing:NSBackingStoreBuffered
                                                            defer:NO];
  makeFloating(panel, pillBehavior);
  panel.hasShadow = NO;
  panel.animationBehavior = NSWindowAnimationBehaviorNone;
  return panel;
}

// Runs the action when a window of the program is covered or uncovered, after a change of Space,
// and when the displays or the user come back.
std::vector<Subscription> whenMaybeSeenAgain(const std::function<void()>& action) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(observe(NSNotificationCenter.defaultCenter,
                                  NSWindowDidChangeOcclusionStateNotification, action));
  for (NSNotificationName name in @[
         NSWorkspaceActiveSpaceDidChangeNotification, NSWorkspaceScreensDidWakeNotification,
         NSWorkspaceSessionDidBecomeActiveNotification
       ]) {
    subscriptions.push_back(observe(NSWorkspace.sharedWorkspace.notificationCenter, name, action));
  }
  return subscriptions;
}

}  // namespace

AppKitPillWindow::AppKitPillWindow(PillSurfaceClient& client)
    : client_(client),
      view_([[KestrowPillView alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)]),
      panel_(makePanel()) {
  view_.client = &client;
  view_.overlay = dot_.layer();
  view_.didAttachOverlay = ^{
    dot_.restorePulse();
  };
  panel_.contentView = view_;
  maybeSeenAgain_ = whenMaybeSeenAgain([this] { dot_.restorePulse(); });
  accessibilityLabelChanged();
}

AppKitPillWindow::~AppKitPillWindow() {
  view_.client = nullptr;
  view_.didAttachOverlay = nil;
  [panel_ orderOut:nil];
}

void AppKitPillWindow::setFrame(const Rect& frame, Seconds duration) {
  const bool moves = move_ && move_->isUnderWay;
  if (moves && frame == target_) return;
  target_ = frame;
  NSPanel* panel = panel_;
  const NSRect target = toNSRect(frame);
  if (duration <= Seconds::zero() && !moves) {
    [panel setFrame:target display:NO];
    return;
  }
  // A move that is under way ends only by another one, however short.
  const auto move = std::make_shared<PillMove>(PillMove{.target = frame});
  move_ = move;
  KestrowPillView* view = view_;
  view.move = move;
  [NSAnimationContext
      runAnimationGroup:^(NSAnimationContext* context) {
        context.duration = std::max(duration.count(), 0.0);
        [[panel animator] setFrame:target display:YES];
      }
      completionHandler:^{
        move->isUnderWay = false;
        view.needsDisplay = YES;
      }];
}

void AppKitPillWindow::setDot(const std::optional<DotAppearance>& dot) {
  dot_.show(dot);
}

void AppKitPillWindow::setNeedsDisplay() {
  view_.needsDisplay = YES;
}

void AppKitPillWindow::accessibilityLabelChanged() {
  view_.accessibilityLabel = toNSString(client_.accessibilityLabel());
}

void AppKitPillWindow::setSharing(bool readable) {
  panel_.sharingType = readable ? NSWindowSharingReadOnly : NSWindowSharingNone;
}

void AppKitPillWindow::orderFront() {
  [panel_ orderFrontRegardless];
  dot_.restorePulse();
}

}  // namespace kestrow::appkit
