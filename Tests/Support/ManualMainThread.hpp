// A main thread whose clock stands still until the test moves it.
#pragma once

#include "KestrowCore/Date.hpp"
#include "KestrowCore/DelayedActions.hpp"
#include "KestrowCore/MainThread.hpp"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrow {

// Nothing runs by itself: the test runs what was posted, and delayed actions when it moves the
// clock. The thread that drives it counts as the main thread; post() may come from any.
class ManualMainThread : public MainThread {
 public:
  // The clock starts here; by default at a fixed, arbitrary date.
  explicit ManualMainThread(Date start = Date(std::chrono::seconds(1'776'000'000))) : now_(start) {}

  void post(std::function<void()> action) override;
  std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) override;

  // The manual clock's time, and the same as a function to pass in, which this must outlive.
  Date now() const { return now_; }
  Now clock() const {
    return [this] { return now_; };
  }

  // Runs what was posted, and what that posts in turn, until nothing is left.
  void runPosted();

  // Waits, in real time, until another thread has posted something, and runs it; false when nothing
  // comes for twenty seconds.
  bool awaitPosted();

  // The same without running it.
  bool awaitPost();

  // Runs what was posted, then moves the clock on, stopping at the time of each delayed action that
  // comes due to run it and all that it posts. `advance(Seconds(0))` runs what is due already.
  void advance(Seconds time);

  // The waits that are set, as they are from now: the shortest first.
  std::vector<Seconds> delays() const;
  std::optional<Seconds> nextDelay() const;

 private:
  std::mutex mutex_;  // of posted_
  std::condition_variable changed_;
  std::vector<std::function<void()>> posted_;
  DelayedActions<Date> delayed_;
  Date now_;
};

}  // namespace kestrow
