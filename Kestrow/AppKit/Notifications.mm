#include "Kestrow/AppKit/Notifications.hpp"

namespace kestrow::appkit {

Subscription observe(NSNotificationCenter* center, NSNotificationName name,
                     std::function<void()> action) {
  id<NSObject> token = [center addObserverForName:name
                                           object:nil
                                            queue:NSOperationQueue.mainQueue
                                       usingBlock:^(NSNotification* /*notification*/) {
                                         action();
                                       }];
  return Subscription([center, token] { [center removeObserver:token]; });
}

}  // namespace kestrow::appkit
