#include "Kestrow/AppKit/Notifications.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

namespace kestrow::appkit {
namespace {

NSNotificationName const name = @"KestrowTest";

void post() {
  [NSNotificationCenter.defaultCenter postNotificationName:name object:nil];
}

TEST(Notifications, RunTheActionUntilTheSubscriptionEnds) {
  int calls = 0;
  {
    const auto subscription = observe(NSNotificationCenter.defaultCenter, name, [&] { ++calls; });
    post();
    post();
  }
  post();
  EXPECT_EQ(calls, 2);
}

TEST(Notifications, MayEndTheirOwnSubscription) {
  int calls = 0;
  Subscription subscription;
  subscription = observe(NSNotificationCenter.defaultCenter, name, [&] {
    subscription = Subscription();
    ++calls;
  });
  post();
  post();
  EXPECT_EQ(calls, 1);
}

TEST(Notifications, DoNotReachASubscriptionThatEndedOnTheirWay) {
  int calls = 0;
  std::array<Subscription, 2> subscriptions;
  for (std::size_t i = 0; i < subscriptions.size(); ++i) {
    subscriptions[i] = observe(NSNotificationCenter.defaultCenter, name, [&, other = 1 - i] {
      ++calls;
      subscriptions[other] = Subscription();
    });
  }
  post();
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace kestrow::appkit
