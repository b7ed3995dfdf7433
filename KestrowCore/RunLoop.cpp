#include "KestrowCore/RunLoop.hpp"

#include <algorithm>
#include <utility>

namespace kestrow {

namespace {

std::chrono::steady_clock::time_point timeIn(Seconds delay) {
  return std::chrono::steady_clock::now() +
         std::chrono::ceil<std::chrono::steady_clock::duration>(boundedDelay(delay));
}

}  // namespace

void RunLoop::post(std::function<void()> action) {
  {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(action));
  }
  changed_.notify_one();
}

std::unique_ptr<DelayedAction> RunLoop::after(Seconds delay, std::function<void()> action) {
  return delayed_.set(timeIn(delay), std::move(action));
}

void RunLoop::run() {
  while (const auto action = next(Time::max())) action();
}

bool RunLoop::runUntil(const std::function<bool()>& condition, Seconds limit) {
  const Time end = timeIn(limit);
  while (!condition()) {
    const auto action = next(end);
    if (!action) return condition();
    action();
  }
  return true;
}

void RunLoop::stop() {
  {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
  }
  changed_.notify_one();
}

std::function<void()> RunLoop::next(Time end) {
  std::unique_lock lock(mutex_);
  while (true) {
    if (std::exchange(isStopped_, false)) return nullptr;
    const Time now = std::chrono::steady_clock::now();
    if (now >= end) return nullptr;
    const Time due = delayed_.nextDue().value_or(Time::max());
    if (due <= now && (posted_.empty() || !wasDelayed_)) {
      wasDelayed_ = true;
      return delayed_.takeNext();
    }
    if (!posted_.empty()) {
      wasDelayed_ = false;
      auto action = std::move(posted_.front());
      posted_.pop_front();
      return action;
    }
    const Time wake = std::min(due, end);
    if (wake == Time::max()) {
      changed_.wait(lock);
    } else {
      changed_.wait_until(lock, wake);
    }
  }
}

}  // namespace kestrow
