#include "Kestrow/AppKit/Notifications.hpp"

#include <memory>
#include <utility>

namespace kestrow::appkit {

// A notification from another thread may be on its way to the main queue when the subscription
// ends, so what is left of it then is an empty action.
Subscription observe(NSNotificationCenter* center, NSNotificationName name,
                     std::function<void()> action) {
  const auto current = std::make_shared<std::function<void()>>(std::move(action));
  id<NSObject> token = [center addObserverForName:name
                                           object:nil
                                            queue:NSOperationQueue.mainQueue
                                       usingBlock:^(NSNotification* /*notification*/) {
                                         const auto own = *current;
                                         if (own) own();
                                       }];
  return Subscription([center, token, current] {
    *current = nullptr;
    [center removeObserver:token];
  });
}

}  // namespace kestrow::appkit
