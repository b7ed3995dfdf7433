// Which match the user follows, and what the feed last said about it.
#pragma once

#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/Match.hpp"
#include "KestrowCore/PillDisplay.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kestrow {

struct FollowState {
  // Missed polls in a row after which the score counts as out of date.
  static constexpr std::int64_t staleAfterMisses = 3;

  // The texts of one match, whatever the feed's condition.
  struct Parts {
    PillDisplay::Kind kind = PillDisplay::Kind::pickMatch;
    std::string text;
    std::string primary;
    std::optional<std::string> secondary;
    std::optional<std::string> batting;
    bool operator==(const Parts&) const = default;
  };

  std::optional<std::string> followedMatchId;
  std::optional<MatchesResponse> lastResponse;
  std::optional<Match> lastMatch;  // the followed match as lastResponse has it
  std::int64_t consecutiveFailures = 0;

  FollowState() = default;
  explicit FollowState(std::optional<std::string> followedMatchId);

  // Follows another match, shown at once when the last answer holds it; nothing changes when the id
  // is the same.
  void follow(const std::optional<std::string>& id);

  // Takes an answer.
  void apply(MatchesResponse response);

  // Counts a failed poll. Traps on overflow.
  void recordFailure();

  bool isStale() const;

  // How long to wait before the next poll: a match in play is asked for every minute, anything else
  // every five.
  Seconds pollInterval() const;

  // What the pill says. `formatStart` words a start time.
  PillDisplay pill(const FormatStart& formatStart) const;
  static Parts describe(const Match& match, const FormatStart& formatStart);

  bool operator==(const FollowState&) const = default;
};

}  // namespace kestrow
