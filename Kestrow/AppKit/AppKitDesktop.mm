#include "Kestrow/AppKit/AppKitDesktop.hpp"

#import <AppKit/AppKit.h>
#import <os/log.h>

#include <utility>

#include "Kestrow/AppKit/AppKitPanelWindow.hpp"
#include "Kestrow/AppKit/AppKitPillWindow.hpp"
#include "Kestrow/AppKit/Coordinates.hpp"
#include "Kestrow/AppKit/Notifications.hpp"
#include "Kestrow/AppKit/Strings.hpp"

namespace kestrow::appkit {

namespace {

NSNotificationCenter* workspaceCenter() {
  return NSWorkspace.sharedWorkspace.notificationCenter;
}

// Screens without a camera housing have empty areas beside it.
std::optional<Rect> auxiliaryArea(NSRect area) {
  if (NSIsEmptyRect(area)) return std::nullopt;
  return toRect(area);
}

Screen toScreen(NSScreen* screen) {
  return {.info = {.frame = toRect(screen.frame),
                   .auxiliaryTopLeftArea = auxiliaryArea(screen.auxiliaryTopLeftArea),
                   .auxiliaryTopRightArea = auxiliaryArea(screen.auxiliaryTopRightArea),
                   .safeAreaTop = screen.safeAreaInsets.top,
                   .menuBarHeight = 0},
          .visibleFrame = toRect(screen.visibleFrame)};
}

}  // namespace

AppKitDesktop::AppKitDesktop(Application& application) : application_(application) {}

std::vector<Screen> AppKitDesktop::screens() const {
  std::vector<Screen> result;
  for (NSScreen* screen in NSScreen.screens) result.push_back(toScreen(screen));
  return result;
}

std::optional<Screen> AppKitDesktop::mainScreen() const {
  NSScreen* screen = NSScreen.mainScreen;
  if (screen == nil) return std::nullopt;
  return toScreen(screen);
}

Subscription AppKitDesktop::onScreensChanged(std::function<void()> action) {
  return observe(NSNotificationCenter.defaultCenter,
                 NSApplicationDidChangeScreenParametersNotification, std::move(action));
}

std::unique_ptr<PillSurface> AppKitDesktop::makePillSurface(PillSurfaceClient& client) {
  return std::make_unique<AppKitPillWindow>(client);
}

std::unique_ptr<PanelSurface> AppKitDesktop::makePanelSurface(PanelSurfaceClient& client) {
  return std::make_unique<AppKitPanelWindow>(client);
}

bool AppKitDesktop::reduceMotion() const {
  return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

Subscription AppKitDesktop::onReduceMotionChanged(std::function<void()> action) {
  return observe(workspaceCenter(), NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification,
                 std::move(action));
}

// On behalf of the application, since the main window is always none.
void AppKitDesktop::announce(std::string_view text) {
  NSAccessibilityPostNotificationWithUserInfo(
      NSApplication.sharedApplication, NSAccessibilityAnnouncementRequestedNotification, @{
        NSAccessibilityAnnouncementKey : toNSString(text),
        NSAccessibilityPriorityKey : @(NSAccessibilityPriorityHigh)
      });
}

Subscription AppKitDesktop::onWillSleep(std::function<void()> action) {
  return observe(workspaceCenter(), NSWorkspaceWillSleepNotification, std::move(action));
}

Subscription AppKitDesktop::onDidWake(std::function<void()> action) {
  return observe(workspaceCenter(), NSWorkspaceDidWakeNotification, std::move(action));
}

Subscription AppKitDesktop::onReopen(std::function<void()> action) {
  return application_.reopened.subscribe(std::move(action));
}

Subscription AppKitDesktop::onClockChanged(std::function<void()> action) {
  auto subscriptions = std::make_shared<std::vector<Subscription>>();
  for (NSNotificationName name in @[
         NSSystemClockDidChangeNotification, NSSystemTimeZoneDidChangeNotification,
         NSCurrentLocaleDidChangeNotification
       ]) {
    subscriptions->push_back(observe(NSNotificationCenter.defaultCenter, name, action));
  }
  return Subscription([subscriptions] { subscriptions->clear(); });
}

void AppKitDesktop::log(std::string_view line) {
  os_log(OS_LOG_DEFAULT, "%{public}@", toNSString(line));
}

void AppKitDesktop::quit() {
  [NSApplication.sharedApplication terminate:nil];
}

}  // namespace kestrow::appkit
