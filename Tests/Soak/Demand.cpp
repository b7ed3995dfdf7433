#include "Tests/Soak/Demand.hpp"

#include <algorithm>
#include <chrono>

namespace kestrow {

using namespace std::chrono_literals;

void Demand::polled(Date now, const std::optional<MatchesResponse>& answer) {
  if (answer) list_ = answer;
  const auto match = list_ ? list_->match(followedId_) : std::nullopt;
  const bool isInPlay =
      match && (match->state == MatchPhase::live || match->state == MatchPhase::inningsBreak);
  nextPoll_ = now + (isInPlay ? 1min : 5min);
}

void Demand::drawn(Date now, bool alertBegan) {
  if (alertBegan) alertEnds_ = now + 4s;
  nextDrawing_ = alertEnds_ > now ? alertEnds_ : now + 1min;
}

std::vector<Seconds> Demand::waits(Date now) const {
  std::vector<Seconds> waits{nextDrawing_ - now, nextPoll_ - now};
  std::ranges::sort(waits);
  return waits;
}

}  // namespace kestrow
