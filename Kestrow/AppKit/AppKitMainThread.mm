#include "Kestrow/AppKit/AppKitMainThread.hpp"

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>

#include <cstdint>
#include <memory>
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

// What waits for its time; nothing of it is left once that has come.
struct Waiting {
  std::function<void()> action;
  std::unique_ptr<Punctuality> punctuality;
};

dispatch_source_t startTimer(Seconds delay, bool isPrecise, dispatch_block_t handler) {
  dispatch_source_t source =
      dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, isPrecise ? DISPATCH_TIMER_STRICT : 0,
                             dispatch_get_main_queue());
  const Seconds leeway = isPrecise ? Seconds::zero() : MainThread::leewayOfLongDelays;
  dispatch_source_set_timer(source, dispatch_time(DISPATCH_TIME_NOW, nanoseconds(delay)),
                            DISPATCH_TIME_FOREVER, static_cast<std::uint64_t>(nanoseconds(leeway)));
  dispatch_source_set_event_handler(source, handler);
  dispatch_resume(source);
  return source;
}

// The action may destroy this object, so the source's handler holds what waits, and not the object.
class Timer final : public DelayedAction {
 public:
  Timer(Seconds delay, std::function<void()> action) : waiting_(std::make_shared<Waiting>()) {
    const bool isPrecise = delay <= MainThread::longestPreciseDelay;
    waiting_->action = std::move(action);
    if (isPrecise) waiting_->punctuality = std::make_unique<Punctuality>();
    const auto waiting = waiting_;
    source_ = startTimer(delay, isPrecise, ^{
      @autoreleasepool {
        const Waiting due = std::exchange(*waiting, {});
        if (due.action) due.action();
      }
    });
  }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() override {
    *waiting_ = {};
    dispatch_source_cancel(source_);
  }

 private:
  std::shared_ptr<Waiting> waiting_;
  dispatch_source_t source_;
};

}  // namespace

// The event loop empties its own pool after events only, and nobody may touch the program for days:
// so each action has one.
void AppKitMainThread::post(std::function<void()> action) {
  dispatch_async(dispatch_get_main_queue(), ^{
    @autoreleasepool {
      action();
    }
  });
}

std::unique_ptr<DelayedAction> AppKitMainThread::after(Seconds delay,
                                                       std::function<void()> action) {
  return std::make_unique<Timer>(boundedDelay(delay), std::move(action));
}

}  // namespace kestrow::appkit
