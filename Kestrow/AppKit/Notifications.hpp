// The system's notifications as subscriptions.
#pragma once

#include "KestrowCore/Subscription.hpp"

#import <Foundation/Foundation.h>

#include <functional>

namespace kestrow::appkit {

// Runs the action on the main thread at each notification of the name, and never again once the
// subscription has ended, which the action itself may do.
Subscription observe(NSNotificationCenter* _Nonnull center, NSNotificationName _Nonnull name,
                     std::function<void()> action);

}  // namespace kestrow::appkit
