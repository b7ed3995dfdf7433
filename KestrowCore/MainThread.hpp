// The port through which the core reaches the main thread's event loop.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kestrow {

// A length of time in seconds, with fractions.
using Seconds = std::chrono::duration<double>;

// An action that waits for its time. Destroying it cancels it; the action itself may do so.
class DelayedAction {
 public:
  DelayedAction() = default;
  DelayedAction(const DelayedAction&) = delete;
  DelayedAction& operator=(const DelayedAction&) = delete;
  virtual ~DelayedAction() = default;
};

class MainThread {
 public:
  // Waits up to this long end to the millisecond and never early. Longer ones, which nobody watches
  // ending, may be off by the leeway, so that the machine wakes once for several of them.
  static constexpr Seconds longestPreciseDelay{10};
  static constexpr Seconds leewayOfLongDelays{0.5};

  virtual ~MainThread() = default;

  // Runs the action on the main thread, soon, in the order of the calls. May be called from any
  // thread, also while the loop is ending; actions that were not reached then are dropped.
  virtual void post(std::function<void()> action) = 0;

  // Runs the action on the main thread once `delay` has passed (at once in the loop's next turn
  // when it is zero or less), unless the returned object has gone by then. Main thread only.
  virtual std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) = 0;
};

}  // namespace kestrow
