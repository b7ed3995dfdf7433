// Key events of a match ("booms"): fours, sixes, wickets, corrections of earlier ones, and other
// notable updates, and the answer of the key-event endpoint that carries them.
#pragma once

#include "KestrowCore/Date.hpp"
#include "KestrowCore/Match.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestrow {

// The first three are announced; a kind that this version does not know reads as `other`.
enum class BoomKind { four, six, wicket, correction, other };

struct BoomEvent {
  std::int64_t id = 0;  // grows with time within a match; the only ordering used
  BoomKind kind = BoomKind::other;
  std::string team;  // the batting side's label
  std::optional<std::string> batter;
  // For a correction, the tally that it corrects: "fours", "sixes" or "wickets".
  std::optional<std::string> field;
  bool late = false;  // reported after the fact: never announced
  Date at;            // when it happened
  bool operator==(const BoomEvent&) const = default;
};

struct ProMatchPayload {
  Match match;                        // as the key-event endpoint sees it
  std::int64_t newestEventId = 0;     // of this match; the baseline
  std::vector<BoomEvent> events;      // newer than the request's `since`
  std::vector<BoomEvent> keyMoments;  // for the log
  std::optional<Match> nextFixture;   // for the countdown after the match
  bool operator==(const ProMatchPayload&) const = default;
};

// The service does not know the match.
struct NotFound {
  bool operator==(const NotFound&) const = default;
};

using ProMatchResult = std::variant<ProMatchPayload, NotFound>;

}  // namespace kestrow
