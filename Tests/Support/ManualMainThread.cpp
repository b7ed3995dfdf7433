#include "Tests/Support/ManualMainThread.hpp"

#include <algorithm>
#include <utility>

namespace kestrow {

void ManualMainThread::post(std::function<void()> action) {
  const std::lock_guard lock(mutex_);
  posted_.push_back(std::move(action));
  changed_.notify_one();
}

std::unique_ptr<DelayedAction> ManualMainThread::after(Seconds delay,
                                                       std::function<void()> action) {
  return delayed_.set(now_ + std::chrono::round<Date::duration>(boundedDelay(delay)),
                      std::move(action));
}

void ManualMainThread::runPosted() {
  while (true) {
    std::vector<std::function<void()>> batch;
    {
      const std::lock_guard lock(mutex_);
      batch.swap(posted_);
    }
    if (batch.empty()) return;
    for (const auto& action : batch) action();
  }
}

bool ManualMainThread::awaitPosted() {
  const bool hasCome = awaitPost();
  runPosted();
  return hasCome;
}

bool ManualMainThread::awaitPost() {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, std::chrono::seconds(20), [this] { return !posted_.empty(); });
}

void ManualMainThread::advance(Seconds time) {
  const Date end = now_ + std::chrono::round<Date::duration>(time);
  runPosted();
  for (auto due = delayed_.nextDue(); due && *due <= end; due = delayed_.nextDue()) {
    now_ = std::max(now_, *due);
    const auto action = delayed_.takeNext();
    action();
    runPosted();
  }
  now_ = end;
}

std::vector<Seconds> ManualMainThread::delays() const {
  std::vector<Seconds> delays;
  for (const Date due : delayed_.dues()) delays.emplace_back(due - now_);
  return delays;
}

std::optional<Seconds> ManualMainThread::nextDelay() const {
  const auto due = delayed_.nextDue();
  if (!due) return std::nullopt;
  return *due - now_;
}

}  // namespace kestrow
