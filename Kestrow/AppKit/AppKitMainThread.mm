#include "Kestrow/AppKit/AppKitMainThread.hpp"

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>

#include <cstdint>
#include <utility>

#include "KestrowCore/DelayedActions.hpp"

namespace kestrow::appkit {

namespace {

std::int64_t nanoseconds(Seconds time) {
  return static_cast<std::int64_t>(time.count() * 1e9);
}

// While it lives, the system runs the program's timers on time. The machine may still go to sleep.
class Punctuality {
 public:
  Punctuality()
      : activity_([NSProcessInfo.processInfo
            beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                              reason:@"An alert is to end on time"]) {}
  Punctuality(const Punctuality&) = delete;
  Punctuality& operator=(const Punctuality&) = delete;
  ~Punctuality() { [NSProcessInfo.processInfo endActivity:activity_]; }

 private:
  id<NSObject> activity_;
};

class Timer final : public DelayedAction {
 public:
  Timer(Seconds delay, std::function<void()> action)
      : action_(std::make_shared<std::function<void()>>(std::move(action))) {
    const bool isPrecise = delay <= MainThread::longestPreciseDelay;
    if (isPrecise) punctuality_ = std::make_unique<Punctuality>();
    source_ = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0,
                                     isPrecise ? DISPATCH_TIMER_STRICT : 0,
                                     dispatch_get_main_queue());
    const Seconds leeway = isPrecise ? Seconds::zero() : MainThread::leewayOfLongDelays;
    dispatch_source_set_timer(source_, dispatch_time(DISPATCH_TIME_NOW, nanoseconds(delay)),
                              DISPATCH_TIME_FOREVER,
                              static_cast<std::uint64_t>(nanoseconds(leeway)));
    // The action may destroy this object, which is why the handler holds the action only.
    const auto waiting = action_;
    dispatch_source_set_event_handler(source_, ^{
      if (const auto due = std::exchange(*waiting, nullptr)) due();
    });
    dispatch_resume(source_);
  }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() override {
    *action_ = nullptr;
    dispatch_source_cancel(source_);
  }

 private:
  std::shared_ptr<std::function<void()>> action_;
  std::unique_ptr<Punctuality> punctuality_;
  dispatch_source_t source_;
};

}  // namespace

void AppKitMainThread::post(std::function<void()> action) {
  dispatch_async(dispatch_get_main_queue(), ^{
    action();
  });
}

std::unique_ptr<DelayedAction> AppKitMainThread::after(Seconds delay,
                                                       std::function<void()> action) {
  return std::make_unique<Timer>(boundedDelay(delay), std::move(action));
}

}  // namespace kestrow::appkit
