#include "KestrowCore/ProPoller.hpp"

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

namespace kestrow {

ProPoller::ProPoller(Fetch fetch, LocalStore& store, Now now)
    : fetch_(std::move(fetch)), store_(store), now_(std::move(now)) {}

ProPoller::ProPoller(ScoreClient client, LocalStore& store, Now now)
    : ProPoller(
          [client = std::move(client)](std::string_view id, std::optional<std::int64_t> since) {
            return client.keyEvents(id, since);
          },
          store, std::move(now)) {}

Task<void> ProPoller::update(FollowState state) {
  if (state.followedMatchId != matchId_) reset(state.followedMatchId);
  if (!state.lastMatch || state.lastMatch->state != MatchPhase::finished) {
    finishedAt_.reset();
  } else if (!finishedAt_) {
    finishedAt_ = now_();
  }
  if (!matchId_) co_return;

  const auto token = ++generation_;
  auto task = fetch_(*matchId_, hasBaseline_ ? queue_.lastSeenId : std::nullopt);
  auto answer = co_await task;
  if (generation_ != token || !answer) co_return;
  if (auto* payload = std::get_if<ProMatchPayload>(&*answer)) take(std::move(*payload));
  if (onChange) onChange();
}

void ProPoller::startUpdate(FollowState state) {
  tasks_.start(update(std::move(state)));
}

void ProPoller::reset(std::optional<std::string> matchId) {
  ++generation_;
  matchId_ = std::move(matchId);
  queue_ = {};
  log_ = {};
  nextFixture_.reset();
  finishedAt_.reset();
  hasBaseline_ = false;
}

void ProPoller::pause() {
  ++generation_;
}

void ProPoller::clockChanged() {
  if (queue_.currentStart) queue_.currentStart = std::min(*queue_.currentStart, now_());
}

std::optional<BoomEvent> ProPoller::currentBoom() {
  return queue_.boom(now_());
}

std::optional<std::string> ProPoller::countdownText(const PillDisplay& display) const {
  return Countdown::text(display, finishedAt_, nextFixture_, now_());
}

std::optional<Countdown::Parts> ProPoller::countdown(const PillDisplay& display) const {
  return Countdown::parts(display, finishedAt_, nextFixture_, now_());
}

PillAppearance ProPoller::appearance() const {
  return store_.customisation().appearance();
}

void ProPoller::take(ProMatchPayload payload) {
  nextFixture_ = std::move(payload.nextFixture);
  log_.merge(payload.keyMoments);
  if (hasBaseline_) {
    log_.merge(queue_.ingest(std::move(payload.events)));
  } else {
    queue_.setBaseline(payload.newestEventId);
    hasBaseline_ = true;
  }
  // The baseline has given the queue its highest seen id.
  storeNewestSeenId(std::max(payload.newestEventId, *queue_.lastSeenId));
}

void ProPoller::storeNewestSeenId(std::int64_t newest) {
  const auto holdsIt = [&](const StoredState& state) {
    if (!state.lastEventIdByMatch) return false;
    const auto entry = state.lastEventIdByMatch->find(*matchId_);
    return entry != state.lastEventIdByMatch->end() && entry->second == newest;
  };
  if (holdsIt(store_.load())) return;
  // Not worth telling when it fails: the next answer brings the id again.
  (void)store_.updateReadable([&](StoredState& state) {
    if (!state.lastEventIdByMatch) state.lastEventIdByMatch.emplace();
    state.lastEventIdByMatch->insert_or_assign(*matchId_, newest);
  });
}

}  // namespace kestrow
