// Follows a match of a real score service over real HTTP, as the application does, with one clock
// for both sides in the caller's hand.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Date.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/Poller.hpp"
#include "KestrowCore/ProPoller.hpp"
#include "KestrowCore/RunLoop.hpp"
#include "KestrowCore/Task.hpp"
#include "KestrowCore/UrlSession.hpp"
#include "ScoreService/ScoreServer.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kestrow {

// One alert as it stood in the pill.
struct ShownAlert {
  BoomEvent event;
  Date from;
  Date until;
  bool operator==(const ShownAlert&) const = default;
};

class FollowedMatch {
 public:
  // Serves the feed; the clock of both sides stands at `start`.
  FollowedMatch(service::MatchFeed feed, const std::string& matchId, Date start,
                std::vector<service::Fault> faults = {});
  FollowedMatch(const FollowedMatch&) = delete;
  FollowedMatch& operator=(const FollowedMatch&) = delete;

  // Polls list and key events once, as the timer would have it, and waits until both answers have
  // been taken or have failed.
  void poll();

  // Moves the clock on, showing the alerts that are due meanwhile.
  void advance(Seconds time);

  // Polls at once and then each minute, for this long.
  void play(Seconds time);

  // Polls each minute until the match has finished, and a little longer, as its last corrections
  // come late. False when it has not after `limit` polls.
  bool playToTheEnd(int limit);

  // Runs the main loop until the task has ended.
  void runToEnd(Task<void> task);

  // Waits, with the main loop at rest, until so many requests have reached the service.
  void awaitRequests(std::int64_t count) const;

  // Runs the main loop until so many answers of the key-event endpoint have come.
  void awaitAnswers(std::size_t count);

  // A new service with another feed takes the place of the old one, at the same address.
  void restartService(service::MatchFeed feed);

  // Sets the service's clock apart from the program's; zero brings them together again.
  void shiftServiceClock(Seconds shift);

  Date now() const { return now_; }
  Poller& poller() { return poller_; }
  ProPoller& proPoller() { return proPoller_; }
  LocalStore& store() { return store_; }
  service::ScoreServer& server() { return *server_; }

  // Everything shown so far.
  const std::vector<ShownAlert>& shown() const { return shown_; }

  // What each answer of the key-event endpoint brought, in the order taken; the first is the
  // baseline's.
  const std::vector<ProMatchPayload>& answers() const { return answers_; }

 private:
  Task<void> pollBoth();
  Task<FeedResult<ProMatchResult>> fetchKeyEvents(std::string id,
                                                  std::optional<std::int64_t> since);
  void startServer(service::MatchFeed feed, int port, std::vector<service::Fault> faults);
  void showWhatIsDue();

  Date now_;
  std::atomic<Date> serviceNow_;
  Seconds serviceShift_{0};
  TemporaryFolder folder_;
  LocalStore store_;
  RunLoop loop_;
  std::unique_ptr<service::ScoreServer> server_;
  ScoreClient client_;
  std::vector<ShownAlert> shown_;
  std::vector<ProMatchPayload> answers_;
  Poller poller_;
  ProPoller proPoller_;
  TaskScope tasks_;
};

// The alerts that the answers ask for: of each but the first, the last three new fours, sixes and
// wickets that were reported in time.
std::vector<BoomEvent> alertsOf(const std::vector<ProMatchPayload>& answers);

}  // namespace kestrow
