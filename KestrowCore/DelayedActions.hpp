// The waits of an event loop, whatever its clock.
#pragma once

#include "KestrowCore/MainThread.hpp"

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrow {

// A delay that clocks can count: at least zero, at most a hundred years. One that is not a number
// counts as zero.
inline Seconds boundedDelay(Seconds delay) {
  constexpr Seconds longest = std::chrono::years(100);
  return delay > Seconds(0) ? std::min(delay, longest) : Seconds(0);
}

// Actions by the time they are due, those of the same time in the order of their setting. One
// thread. The DelayedActions that it hands out may outlive it.
template <class Time>
class DelayedActions {
 public:
  std::unique_ptr<DelayedAction> set(Time due, std::function<void()> action) {
    return std::make_unique<Wait>(entries_, due, std::move(action));
  }

  std::optional<Time> nextDue() const {
    if (entries_->empty()) return std::nullopt;
    return entries_->begin()->first;
  }

  std::vector<Time> dues() const {
    std::vector<Time> times;
    for (const auto& [due, entry] : *entries_) times.push_back(due);
    return times;
  }

  // Takes out the action that is due first; it no longer waits. There must be one.
  std::function<void()> takeNext() {
    const auto first = entries_->extract(entries_->begin());
    first.mapped()->isSet_ = false;
    return std::move(first.mapped()->action_);
  }

 private:
  class Wait;
  using Entries = std::multimap<Time, Wait*>;

  class Wait : public DelayedAction {
   public:
    Wait(std::shared_ptr<Entries> entries, Time due, std::function<void()> action)
        : entries_(std::move(entries)), action_(std::move(action)) {
      place_ = entries_->emplace(due, this);
    }
    ~Wait() override {
      if (isSet_) entries_->erase(place_);
    }

   private:
    friend DelayedActions;

    std::shared_ptr<Entries> entries_;
    std::function<void()> action_;
    typename Entries::iterator place_;
    bool isSet_ = true;
  };

  std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace kestrow
