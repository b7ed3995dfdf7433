// The main thread's event loop for programs without a toolkit: so far tests, fuzzers and tools.
#pragma once

#include "KestrowCore/DelayedActions.hpp"
#include "KestrowCore/MainThread.hpp"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace kestrow {

// The thread that runs the loop is the main thread. It sleeps until something is posted or due.
// Posted and due actions take turns, so neither kind can starve the other.
class RunLoop : public MainThread {
 public:
  void post(std::function<void()> action) override;
  std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) override;

  // Runs actions until stop().
  void run();

  // Runs actions until the condition holds (looked at first and after each action), the time is
  // up, or stop(). True when the condition holds at the end.
  bool runUntil(const std::function<bool()>& condition, Seconds limit);

  // Ends the loop after the action that is running; from any thread. Called while no loop runs, it
  // ends the next one at once. Actions that were not reached wait for the next run, or go with the
  // loop.
  void stop();

 private:
  using Time = std::chrono::steady_clock::time_point;

  // Waits for the next action and takes it; an empty one when it is time to end.
  std::function<void()> next(Time end);

  std::mutex mutex_;  // of posted_ and isStopped_
  std::condition_variable changed_;
  std::deque<std::function<void()>> posted_;
  bool isStopped_ = false;
  DelayedActions<Time> delayed_;
  bool wasDelayed_ = false;  // the action taken last
};

}  // namespace kestrow
