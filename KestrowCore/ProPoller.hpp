// Fetches the key events of the followed match after each score poll, and keeps the alert queue,
// the log and the next fixture. What happened before following began is never announced.
#pragma once

#include "KestrowCore/BoomQueue.hpp"
#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/FollowState.hpp"
#include "KestrowCore/KeyMomentsLog.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Task.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kestrow {

// Main thread only.
class ProPoller {
 public:
  using Fetch = std::function<Task<FeedResult<ProMatchResult>>(std::string matchId,
                                                               std::optional<std::int64_t> since)>;

  // The store must outlive the poller.
  ProPoller(Fetch fetch, LocalStore& store, Now now);
  ProPoller(ScoreClient client, LocalStore& store, Now now);
  ProPoller(const ProPoller&) = delete;
  ProPoller& operator=(const ProPoller&) = delete;

  // Called when anything that the pill shows may have changed. Must not destroy the poller.
  std::function<void()> onChange;

  const BoomQueue& queue() const { return queue_; }
  const KeyMomentsLog& log() const { return log_; }
  const std::optional<Match>& nextFixture() const { return nextFixture_; }
  const std::optional<std::string>& matchId() const { return matchId_; }
  std::optional<Date> finishedAt() const { return finishedAt_; }
  bool hasBaseline() const { return hasBaseline_; }

  // Takes a new follow state and asks for the followed match's key events. Ends when the answer has
  // been taken or dropped; a newer update drops the older one's answer. Not awaited, it goes
  // through startUpdate().
  Task<void> update(FollowState state);

  // The same as a task of the poller's own.
  void startUpdate(FollowState state);

  // Forgets everything about the match before.
  void reset(std::optional<std::string> matchId);

  // Drops an answer in flight.
  void pause();

  // The wall clock was set. An alert that now would begin in the future begins now: it shows for
  // its usual time, however far the clock was set back.
  void clockChanged();

  // The alert to show now; moves the queue on.
  std::optional<BoomEvent> currentBoom();

  std::optional<std::string> countdownText(const PillDisplay& display) const;
  std::optional<Countdown::Parts> countdown(const PillDisplay& display) const;

  // From the stored customisation.
  PillAppearance appearance() const;

 private:
  void take(ProMatchPayload payload);
  void storeNewestSeenId(std::int64_t newest);

  BoomQueue queue_;
  KeyMomentsLog log_;
  std::optional<Match> nextFixture_;
  std::optional<std::string> matchId_;
  std::optional<Date> finishedAt_;  // when the followed match was first seen finished
  Fetch fetch_;
  LocalStore& store_;
  Now now_;
  bool hasBaseline_ = false;
  std::int64_t generation_ = 0;  // only the answer to the latest request is taken
  TaskScope tasks_;
};

}  // namespace kestrow
