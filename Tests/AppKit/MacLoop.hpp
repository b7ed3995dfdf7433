// Runs the main thread's loop in a test.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>

namespace kestrow::appkit {

// Until the condition holds, or for ten seconds at most. Whether it holds.
inline bool runUntil(const std::function<bool()>& condition) {
  NSDate* deadline = [NSDate dateWithTimeIntervalSinceNow:10];
  while (!condition() && deadline.timeIntervalSinceNow > 0) {
    [NSRunLoop.mainRunLoop runMode:NSDefaultRunLoopMode
                        beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
  }
  return condition();
}

}  // namespace kestrow::appkit
