// The program as the system sees it: one without a Dock icon and a menu bar.
#pragma once

#include "KestrowCore/Subscription.hpp"

#import <AppKit/AppKit.h>

namespace kestrow::appkit {

// One for the process, made on the main thread before any window.
class Application {
 public:
  Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application();

  // Windows may be made from here on.
  Signal didFinishLaunching;
  // The user opened the program again.
  Signal reopened;
  // The last chance to end in order: run() does not return.
  Signal willTerminate;

  // Runs the event loop until the process ends.
  void run();

 private:
  id<NSApplicationDelegate> _Nonnull delegate_;  // the application does not keep it
};

}  // namespace kestrow::appkit
