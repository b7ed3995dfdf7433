#include "Kestrow/AppKit/Application.hpp"

@interface KestrowApplicationDelegate : NSObject<NSApplicationDelegate>

// Taken away with null when the application goes.
@property(nonatomic, nullable) kestrow::appkit::Application* application;

@end

@implementation KestrowApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if (self.application) self.application->didFinishLaunching.notify();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)visible {
  if (self.application) self.application->reopened.notify();
  return NO;
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  if (self.application) self.application->willTerminate.notify();
}

// The pill can be hidden and the panel closed.
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
  return NO;
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)sender {
  return YES;
}

@end

namespace kestrow::appkit {

namespace {

id<NSApplicationDelegate> makeDelegate(Application& application) {
  KestrowApplicationDelegate* delegate = [[KestrowApplicationDelegate alloc] init];
  delegate.application = &application;
  return delegate;
}

}  // namespace

Application::Application() : delegate_(makeDelegate(*this)) {
  NSApplication* application = NSApplication.sharedApplication;
  application.delegate = delegate_;
  [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

Application::~Application() {
  static_cast<KestrowApplicationDelegate*>(delegate_).application = nullptr;
}

void Application::run() {
  [NSApplication.sharedApplication run];
}

}  // namespace kestrow::appkit
