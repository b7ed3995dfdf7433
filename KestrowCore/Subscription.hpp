// Registrations that end by themselves.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace kestrow {

// Ends a registration when it goes out of scope. Movable; an empty one ends nothing.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    std::swap(end_, other.end_);
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() {
    if (end_) end_();
  }

 private:
  std::function<void()> end_;
};

// Calls everyone who subscribed, in the order of subscribing. One thread. A subscription may end
// during a call, and outlive the signal.
class Signal {
 public:
  Subscription subscribe(std::function<void()> action) {
    auto entry = std::make_shared<std::function<void()>>(std::move(action));
    entries_->push_back(entry);
    return Subscription([entries = std::weak_ptr(entries_), entry] {
      *entry = nullptr;
      if (const auto list = entries.lock()) list->remove(entry);
    });
  }

  void notify() const {
    const auto snapshot = *entries_;
    for (const auto& entry : snapshot) {
      if (*entry) (*entry)();
    }
  }

 private:
  using Entries = std::list<std::shared_ptr<std::function<void()>>>;
  std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace kestrow
