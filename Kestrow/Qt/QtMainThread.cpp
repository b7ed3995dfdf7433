#include "Kestrow/Qt/QtMainThread.hpp"

#include "KestrowCore/DelayedActions.hpp"

#include <QMetaObject>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestrow::qt {
namespace {

using Clock = std::chrono::steady_clock;

class QtDelayedAction final : public DelayedAction {
 public:
  QtDelayedAction(Seconds delay, std::function<void()> action)
      : due_(Clock::now() + std::chrono::ceil<Clock::duration>(delay)),
        isPrecise_(delay <= QtMainThread::longestPreciseDelay),
        action_(std::move(action)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(isPrecise_ ? Qt::PreciseTimer : Qt::VeryCoarseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { timerEnded(); });
    wait();
  }

 private:
  // Qt's timers count at most 24 days, so a longer wait is made of several.
  void wait() {
    constexpr std::chrono::milliseconds longest = std::chrono::days(20);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due_ - Clock::now());
    timer_.start(std::clamp(left, std::chrono::milliseconds(0), longest));
  }

  void timerEnded() {
    const auto early =
        isPrecise_ ? Clock::duration::zero() : Clock::duration(std::chrono::seconds(1));
    if (Clock::now() + early < due_) {
      wait();
      return;
    }
    // The action may destroy this object.
    const auto action = std::exchange(action_, nullptr);
    action();
  }

  QTimer timer_;
  Clock::time_point due_;
  bool isPrecise_;
  std::function<void()> action_;
};

}  // namespace

void QtMainThread::post(std::function<void()> action) {
  QMetaObject::invokeMethod(&context_, std::move(action), Qt::QueuedConnection);
}

std::unique_ptr<DelayedAction> QtMainThread::after(Seconds delay, std::function<void()> action) {
  return std::make_unique<QtDelayedAction>(boundedDelay(delay), std::move(action));
}

}  // namespace kestrow::qt
