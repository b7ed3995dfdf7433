// Where in a match the service begins to play it.
#pragma once

#include "KestrowCore/MainThread.hpp"
#include "ScoreService/MatchScript.hpp"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace kestrow::service {

struct StartPoint {
  enum class Stage { before, firstInnings, inningsBreak, chase, result };
  Stage stage = Stage::firstInnings;
  std::int64_t balls = 0;  // legal balls into the innings
  bool operator==(const StartPoint&) const = default;
};

// Reads "before", "12.3" (overs of the first innings), "break", "chase", "chase:12.3" or "result".
// Overs are 0 to 50 and have six balls. Fails with one line.
std::expected<StartPoint, std::string> parseStartPoint(std::string_view text);

// The match's time at the start point; its end when the match never gets there. "Before" is ten
// minutes before the first over.
Seconds startTime(const StartPoint& point, const MatchScript& script);

}  // namespace kestrow::service
