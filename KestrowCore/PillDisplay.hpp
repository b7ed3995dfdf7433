// The short texts that tell the state of the followed match. Made by FollowState::pill.
#pragma once

#include "KestrowCore/Date.hpp"

#include <functional>
#include <optional>
#include <string>

namespace kestrow {

// Words a start time for the user.
using FormatStart = std::function<std::string(Date)>;

struct PillDisplay {
  enum class Kind { pickMatch, loading, live, inningsBreak, notStarted, finished, unavailable };

  static constexpr const char* pickMatchText = "Pick a match";
  static constexpr const char* loadingText = "Loading…";
  static constexpr const char* unavailableText = "Scores unavailable";
  static constexpr const char* sampleLabel = "sample";

  Kind kind = Kind::pickMatch;
  std::string text;  // the whole state in one line
  bool isSample = false;
  bool isStale = false;
  std::optional<std::string> teams;  // "MI v CSK"
  std::string primary;               // score, result or state word
  std::optional<std::string> secondary;
  std::optional<std::string> battingTeam;  // short name of the side that bats

  bool operator==(const PillDisplay&) const = default;
};

}  // namespace kestrow
