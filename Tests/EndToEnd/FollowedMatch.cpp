#include "Tests/EndToEnd/FollowedMatch.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <optional>
#include <thread>
#include <utility>
#include <variant>

namespace kestrow {
namespace {

constexpr Seconds betweenPolls{60};
constexpr Seconds answerLimit{30};

// The caller polls by hand.
class NoScheduler final : public PollScheduler {
 public:
  std::unique_ptr<PollTimer> schedule(Seconds /*after*/,
                                      std::function<void()> /*action*/) override {
    return nullptr;
  }
};

Date later(Date date, Seconds time) {
  return date + std::chrono::duration_cast<Date::duration>(time);
}

[[noreturn]] void giveUp(const std::string& why) {
  std::cerr << why << '\n' << std::flush;
  std::abort();
}

}  // namespace

FollowedMatch::FollowedMatch(service::MatchFeed feed, const std::string& matchId, Date start,
                             std::vector<service::Fault> faults)
    : now_(start),
      serviceNow_(start),
      store_(folder_.path() / "Kestrow"),
      poller_([this] { return client_.matches(); }, std::make_unique<NoScheduler>(), &store_),
      proPoller_(
          [this](std::string id, std::optional<std::int64_t> since) {
            return fetchKeyEvents(std::move(id), since);
          },
          store_, [this] { return now_; }) {
  startServer(std::move(feed), 0, std::move(faults));
  client_.baseUrl = server_->url();
  client_.transport = urlSessionTransport(std::make_shared<UrlSession>(loop_));
  poller_.follow(matchId);
}

void FollowedMatch::startServer(service::MatchFeed feed, int port,
                                std::vector<service::Fault> faults) {
  auto started = service::ScoreServer::start(std::move(feed), [this] { return serviceNow_.load(); },
                                             {.port = port, .faults = std::move(faults)});
  if (!started) giveUp(started.error());
  server_ = *std::move(started);
}

void FollowedMatch::restartService(service::MatchFeed feed) {
  const int port = server_->port();
  server_.reset();
  startServer(std::move(feed), port, {});
}

void FollowedMatch::shiftServiceClock(Seconds shift) {
  serviceShift_ = shift;
  serviceNow_ = later(now_, shift);
}

Task<FeedResult<ProMatchResult>> FollowedMatch::fetchKeyEvents(std::string id,
                                                               std::optional<std::int64_t> since) {
  auto task = client_.keyEvents(id, since);
  auto result = co_await task;
  if (result) {
    if (const auto* payload = std::get_if<ProMatchPayload>(&*result)) answers_.push_back(*payload);
  }
  co_return result;
}

Task<void> FollowedMatch::pollBoth() {
  auto list = poller_.pollNow();
  co_await list;
  auto events = proPoller_.update(poller_.state());
  co_await events;
}

void FollowedMatch::runToEnd(Task<void> task) {
  tasks_.start(std::move(task));
  if (!loop_.runUntil([this] { return tasks_.isIdle(); }, answerLimit)) {
    giveUp("the service does not answer");
  }
}

void FollowedMatch::awaitRequests(std::int64_t count) const {
  const auto deadline = std::chrono::steady_clock::now() + answerLimit;
  while (server_->requestCount() < count) {
    if (std::chrono::steady_clock::now() > deadline) giveUp("the service is not asked");
    std::this_thread::yield();
  }
}

void FollowedMatch::awaitAnswers(std::size_t count) {
  if (!loop_.runUntil([&] { return answers_.size() >= count; }, answerLimit)) {
    giveUp("an answer does not come");
  }
}

void FollowedMatch::poll() {
  runToEnd(pollBoth());
  showWhatIsDue();
}

void FollowedMatch::showWhatIsDue() {
  const auto& queue = proPoller_.queue();
  const auto before = queue.currentStart;
  if (const auto event = proPoller_.currentBoom()) {
    if (!before || queue.currentStart != before) shown_.push_back({*event, now_, now_});
    shown_.back().until = std::max(shown_.back().until, now_);
  }
}

void FollowedMatch::advance(Seconds time) {
  const Date end = later(now_, time);
  while (now_ < end) {
    // As the shell does: looks again when the alert that shows has had its time.
    const Date next = std::min(proPoller_.queue().currentEndsAt().value_or(end), end);
    if (proPoller_.queue().current) shown_.back().until = next;
    now_ = next;
    shiftServiceClock(serviceShift_);
    showWhatIsDue();
  }
}

void FollowedMatch::play(Seconds time) {
  for (Seconds played{0}; played < time; played += betweenPolls) {
    poll();
    advance(betweenPolls);
  }
}

bool FollowedMatch::playToTheEnd(int limit) {
  constexpr int pollsAfterTheEnd = 3;
  for (int polls = 0; polls < limit; ++polls) {
    poll();
    advance(betweenPolls);
    const auto& match = poller_.state().lastMatch;
    if (match && match->state == MatchPhase::finished) {
      play(betweenPolls * pollsAfterTheEnd);
      return true;
    }
  }
  return false;
}

std::vector<BoomEvent> alertsOf(const std::vector<ProMatchPayload>& answers) {
  std::vector<BoomEvent> alerts;
  std::int64_t seen = answers.empty() ? 0 : answers.front().newestEventId;
  for (std::size_t i = 1; i < answers.size(); ++i) {
    std::vector<BoomEvent> announced;
    for (const BoomEvent& event : answers[i].events) {
      if (event.id <= seen) continue;
      seen = event.id;
      const bool isAnnounced = event.kind == BoomKind::four || event.kind == BoomKind::six ||
                               event.kind == BoomKind::wicket;
      if (isAnnounced && !event.late) announced.push_back(event);
    }
    const auto count = static_cast<std::ptrdiff_t>(std::min<std::size_t>(announced.size(), 3));
    alerts.insert(alerts.end(), announced.end() - count, announced.end());
  }
  return alerts;
}

}  // namespace kestrow
