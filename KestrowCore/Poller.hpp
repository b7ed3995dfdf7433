// Polls the match list and keeps the FollowState: one poll, then a wait whose length the followed
// match's phase decides.
#pragma once

#include "KestrowCore/FollowState.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/Task.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kestrow {

// A wait under way. Destroying it cancels it too.
class PollTimer {
 public:
  virtual ~PollTimer() = default;
  virtual void cancel() = 0;
};

// Runs an action on the main thread after a delay; less than zero counts as zero.
class PollScheduler {
 public:
  virtual ~PollScheduler() = default;
  virtual std::unique_ptr<PollTimer> schedule(Seconds after, std::function<void()> action) = 0;
};

// The real scheduler, on the main thread's loop.
class TaskPollScheduler : public PollScheduler {
 public:
  explicit TaskPollScheduler(MainThread& mainThread) : mainThread_(mainThread) {}
  std::unique_ptr<PollTimer> schedule(Seconds after, std::function<void()> action) override;

 private:
  MainThread& mainThread_;
};

// Main thread only. Destroying the poller drops its waits and the polls in flight.
class Poller {
 public:
  using Fetch = std::function<Task<FeedResult<MatchesResponse>>()>;

  // Takes the followed match from the store, when there is one. The store must outlive the poller.
  Poller(Fetch fetch, std::unique_ptr<PollScheduler> scheduler, LocalStore* store);
  Poller(ScoreClient client, MainThread& mainThread, LocalStore& store);
  Poller(const Poller&) = delete;
  Poller& operator=(const Poller&) = delete;
  ~Poller();

  // Called after every change of the state. Must not destroy the poller.
  std::function<void(const FollowState&)> onChange;

  const FollowState& state() const { return state_; }
  bool isPaused() const { return isPaused_; }
  // The length of the last wait that was set; for observers.
  std::optional<Seconds> scheduledInterval() const { return scheduledInterval_; }

  void start();   // polls at once, then on
  void stop();    // an answer in flight is still taken
  void pause();   // an answer in flight is dropped
  void resume();  // polls at once if running

  // Follows another match (or none), keeps that in the store, and polls at once when running; also
  // when the id is the same. A failed save is ignored.
  void follow(const std::optional<std::string>& id);

  // One poll now, in place of the one that waits. Ends when the answer has been taken or dropped.
  // Whoever awaits it keeps the poller until then, or drops the task first.
  Task<void> pollNow();

 private:
  void scheduleNext();
  void dropTimer();

  FollowState state_;
  bool isPaused_ = false;
  std::optional<Seconds> scheduledInterval_;
  Fetch fetch_;
  std::unique_ptr<PollScheduler> scheduler_;
  LocalStore* store_;
  std::unique_ptr<PollTimer> timer_;
  bool isRunning_ = false;
  std::int64_t generation_ = 0;  // counts pauses: an answer from before a pause is dropped
  TaskScope tasks_;
};

}  // namespace kestrow
