#include "KestrowCore/FollowState.hpp"

#include <cstdlib>
#include <utility>

namespace kestrow {

namespace {

std::optional<Match> followedMatch(const std::optional<MatchesResponse>& response,
                                   const std::optional<std::string>& id) {
  return response && id ? response->match(*id) : std::nullopt;
}

}  // namespace

FollowState::FollowState(std::optional<std::string> id) : followedMatchId(std::move(id)) {}

void FollowState::follow(const std::optional<std::string>& id) {
  if (id == followedMatchId) return;
  followedMatchId = id;
  lastMatch = followedMatch(lastResponse, followedMatchId);
}

void FollowState::apply(MatchesResponse response) {
  lastResponse = std::move(response);
  consecutiveFailures = 0;
  lastMatch = followedMatch(lastResponse, followedMatchId);
}

void FollowState::recordFailure() {
  if (__builtin_add_overflow(consecutiveFailures, 1, &consecutiveFailures)) std::abort();
}

bool FollowState::isStale() const {
  if (consecutiveFailures >= staleAfterMisses) return true;
  return lastResponse && lastResponse->stale;
}

Seconds FollowState::pollInterval() const {
  constexpr Seconds inPlay = std::chrono::minutes(1);
  constexpr Seconds otherwise = std::chrono::minutes(5);
  if (!lastMatch) return otherwise;
  switch (lastMatch->state) {
    case MatchPhase::live:
    case MatchPhase::inningsBreak:
      return inPlay;
    case MatchPhase::notStarted:
    case MatchPhase::finished:
      break;
  }
  return otherwise;
}

}  // namespace kestrow
