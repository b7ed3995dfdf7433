// The service's own words on a match: its result, and how a chase stands.
#pragma once

#include "ScoreService/PlayedMatch.hpp"

#include <cstdint>
#include <string>

namespace kestrow::service {

// "Mumbai Indians won by 7 wickets (with 3 balls left)", "… won by 12 runs", "Match tied" or
// "Match tied (Mumbai Indians won the Super Over)", from the innings of a match that was played to
// its end.
std::string resultText(const PlayedMatch& match);

// "Mumbai Indians need 45 runs in 30 balls", while a chase goes on.
std::string chaseText(const std::string& team, std::int64_t runsNeeded, std::int64_t ballsLeft);

// A number with its noun: "1 run", "12 runs".
std::string counted(std::int64_t count, const std::string& noun);

}  // namespace kestrow::service
