// Plays a T20 match that never was, ball by ball, from a seed.
#pragma once

#include "ScoreService/PlayedMatch.hpp"

#include <cstdint>

namespace kestrow::service {

// The same seed and teams give the same match, on every platform. The rules of the game hold: an
// innings ends with ten wickets or twenty overs, a chase also at the target; six legal balls make
// an over; nobody bowls more than four overs, nor two in a row; a tie goes to a super over.
PlayedMatch simulateMatch(std::uint64_t seed, const Team& team1, const Team& team2);

}  // namespace kestrow::service
