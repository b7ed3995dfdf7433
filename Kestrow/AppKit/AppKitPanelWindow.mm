#include "Kestrow/AppKit/AppKitPanelWindow.hpp"

#include <functional>
#include <utility>

#import "Kestrow/AppKit/Action.hpp"
#include "Kestrow/AppKit/Coordinates.hpp"
#include "Kestrow/AppKit/PanelScroll.hpp"
#import "Kestrow/AppKit/PanelWindow.hpp"

@interface KestrowPanelDelegate : NSObject<NSWindowDelegate>

- (nonnull instancetype)initWithResigned:(std::function<void()>)resigned;

@end

@implementation KestrowPanelDelegate {
  std::function<void()> _resigned;
}

- (instancetype)initWithResigned:(std::function<void()>)resigned {
  self = [super init];
  if (self) _resigned = std::move(resigned);
  return self;
}

- (void)windowDidResignKey:(NSNotification*)notification {
  _resigned();
}

@end

namespace kestrow::appkit {

AppKitPanelWindow::AppKitPanelWindow(PanelSurfaceClient& client)
    : client_(client),
      column_(client),
      panel_(makePanelWindow()),
      scroll_(makePanelScroll(column_.stack())),
      delegate_(
          [[KestrowPanelDelegate alloc] initWithResigned:[&client] { client.resignedKey(); }]) {
  panel_.contentView = makePanelBackground(scroll_);
  panel_.delegate = delegate_;
}

AppKitPanelWindow::~AppKitPanelWindow() {
  panel_.delegate = nil;
  [panel_ orderOut:nil];
}

void AppKitPanelWindow::setContent(const PanelNode& root) {
  const ScrollPlace place(scroll_, column_.stack());
  column_.apply(root);
  [scroll_.documentView layoutSubtreeIfNeeded];
  place.restore();
}

double AppKitPanelWindow::fittingHeight() {
  [column_.stack() layoutSubtreeIfNeeded];
  return column_.stack().fittingSize.height;
}

void AppKitPanelWindow::setFrame(const Rect& frame) {
  [panel_ setFrame:toNSRect(frame) display:YES];
  [panel_ invalidateShadow];  // which follows the round corners
}

bool AppKitPanelWindow::isVisible() const {
  return panel_.visible;
}

bool AppKitPanelWindow::isKey() const {
  return panel_.keyWindow;
}

void AppKitPanelWindow::scrollToTop() {
  [scroll_.contentView scrollToPoint:NSMakePoint(0, 0)];
  [scroll_ reflectScrolledClipView:scroll_.contentView];
}

void AppKitPanelWindow::showAndMakeKey() {
  [panel_ makeKeyAndOrderFront:nil];
  [panel_ makeFirstResponder:nil];
}

// Losing the keyboard on the way out is no news: the window's delegate is asked after it.
void AppKitPanelWindow::orderOut() {
  panel_.delegate = nil;
  [panel_ orderOut:nil];
  panel_.delegate = delegate_;
}

void AppKitPanelWindow::installMonitors() {
  PanelSurfaceClient& client = client_;
  if (!outsideClicks_) {
    outsideClicks_ = EventMonitor::ofOthers(mouseDowns, [&client] { client.clickedOutside(); });
  }
  if (!escapeKey_) {
    escapeKey_ = EventMonitor::ofOwn(keyDowns, [&client](NSEvent* event) {
      return event.keyCode == escapeKeyCode && client.escapePressed();
    });
  }
}

void AppKitPanelWindow::removeMonitors() {
  outsideClicks_.reset();
  escapeKey_.reset();
}

}  // namespace kestrow::appkit
