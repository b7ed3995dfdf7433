// The two windows' settings, which decide where they are seen and what they take from other
// programs.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Kestrow/AppKit/AppKitPillWindow.hpp"
#include "Kestrow/AppKit/EventMonitor.hpp"
#include "Kestrow/AppKit/FloatingPanel.hpp"
#import "Kestrow/AppKit/PanelWindow.hpp"

namespace kestrow::appkit {
namespace {

// What the system knows them by. Checked wherever this is compiled.
static_assert(floatingLevel == 27);
static_assert(floatingStyle == 128);
static_assert(pillBehavior == 337);
static_assert(panelBehavior == 321);
static_assert(mouseDowns == 10);
static_assert(keyDowns == 1024);
static_assert(escapeKeyCode == 53);
static_assert(NSWindowSharingNone == 0 && NSWindowSharingReadOnly == 1);
static_assert(NSAccessibilityPriorityHigh == 90);

class Pill : public PillSurfaceClient {
 public:
  void draw(Canvas& /*canvas*/, const Rect& bounds, double /*scale*/) override { drawn = bounds; }
  void click() override { ++clicks; }
  std::string accessibilityLabel() const override { return "MI 145 for 3"; }

  int clicks = 0;
  Rect drawn;
};

class WindowsOnAMac : public testing::Test {
 protected:
  WindowsOnAMac() { [NSApplication.sharedApplication class]; }

  static NSPanel* newest() {
    return static_cast<NSPanel*>(NSApplication.sharedApplication.windows.lastObject);
  }
};

void expectFloating(NSPanel* panel) {
  EXPECT_EQ(panel.level, 27);
  EXPECT_EQ(panel.styleMask, 128U);
  EXPECT_TRUE(panel.floatingPanel);
  EXPECT_FALSE(panel.opaque);
  EXPECT_FALSE(panel.movable);
  EXPECT_FALSE(panel.hidesOnDeactivate);
  EXPECT_FALSE(panel.releasedWhenClosed);
  EXPECT_FALSE(panel.canBecomeMainWindow);
  EXPECT_TRUE([panel.title isEqualToString:@"Kestrow"]);
}

TEST_F(WindowsOnAMac, PillFloatsAndTakesNoKeyboard) {
  Pill pill;
  const AppKitPillWindow window(pill);
  NSPanel* panel = newest();
  expectFloating(panel);
  EXPECT_EQ(panel.collectionBehavior, 337U);
  EXPECT_FALSE(panel.hasShadow);
  EXPECT_FALSE(panel.canBecomeKeyWindow);
}

TEST_F(WindowsOnAMac, PillIsAButtonForAssistiveTechnology) {
  Pill pill;
  const AppKitPillWindow window(pill);
  NSView* view = newest().contentView;
  EXPECT_TRUE(view.accessibilityElement);
  EXPECT_TRUE([view.accessibilityRole isEqualToString:NSAccessibilityButtonRole]);
  EXPECT_TRUE([view.accessibilityLabel isEqualToString:@"MI 145 for 3"]);
  EXPECT_TRUE([view accessibilityPerformPress]);
  EXPECT_EQ(pill.clicks, 1);
}

TEST_F(WindowsOnAMac, PillIsShownToCapturesOnlyWhenItMay) {
  Pill pill;
  AppKitPillWindow window(pill);
  window.setSharing(false);
  EXPECT_EQ(newest().sharingType, NSWindowSharingNone);
  window.setSharing(true);
  EXPECT_EQ(newest().sharingType, NSWindowSharingReadOnly);
}

TEST_F(WindowsOnAMac, PillKeepsItsContentInPlaceWhileItGlides) {
  Pill pill;
  AppKitPillWindow window(pill);
  window.setFrame({100, 300, 200, 24}, Seconds::zero());
  window.orderFront();
  NSPanel* panel = newest();
  [panel.contentView display];
  EXPECT_EQ(pill.drawn, (Rect{0, 0, 200, 24}));

  window.setFrame({90, 284, 220, 40}, Seconds(60));
  [panel.contentView display];
  EXPECT_NEAR(pill.drawn.x, panel.frame.origin.x - 90, 0.01);
  EXPECT_NEAR(pill.drawn.y, panel.frame.origin.y - 284, 0.01);
  EXPECT_GT(pill.drawn.y, 8);
  EXPECT_EQ(window.frame(), (Rect{90, 284, 220, 40}));
}

TEST_F(WindowsOnAMac, PillPulsesAgainWhenItMayBeSeenAgain) {
  Pill pill;
  AppKitPillWindow window(pill);
  window.setDot(DotAppearance{.frame = {10, 9, 6, 6}, .pulses = true});
  CALayer* dot = static_cast<KestrowPillView*>(newest().contentView).overlay;
  const auto expectRestored = [&](NSNotificationCenter* center, NSNotificationName name) {
    [dot removeAllAnimations];
    [center postNotificationName:name object:nil];
    EXPECT_NE([dot animationForKey:@"pulse"], nil);
  };
  expectRestored(NSNotificationCenter.defaultCenter, NSWindowDidChangeOcclusionStateNotification);
  for (NSNotificationName name in @[
         NSWorkspaceActiveSpaceDidChangeNotification, NSWorkspaceScreensDidWakeNotification,
         NSWorkspaceSessionDidBecomeActiveNotification
       ]) {
    expectRestored(NSWorkspace.sharedWorkspace.notificationCenter, name);
  }
}

TEST_F(WindowsOnAMac, PillsDotPulsesAgainInAnotherLayer) {
  Pill pill;
  AppKitPillWindow window(pill);
  window.setDot(DotAppearance{.frame = {10, 9, 6, 6}, .pulses = true});
  auto* view = static_cast<KestrowPillView*>(newest().contentView);
  CALayer* dot = view.overlay;
  [dot removeFromSuperlayer];
  [dot removeAllAnimations];
  [view viewDidMoveToWindow];
  EXPECT_EQ(dot.superlayer, view.layer);
  EXPECT_NE([dot animationForKey:@"pulse"], nil);
}

TEST_F(WindowsOnAMac, PanelFloatsAndTakesTheKeyboard) {
  NSPanel* panel = makePanelWindow();
  expectFloating(panel);
  EXPECT_EQ(panel.collectionBehavior, 321U);
  EXPECT_TRUE(panel.hasShadow);
  EXPECT_TRUE(panel.canBecomeKeyWindow);
  EXPECT_FALSE(panel.becomesKeyOnlyIfNeeded);
}

}  // namespace
}  // namespace kestrow::appkit
