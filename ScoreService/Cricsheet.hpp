// Reads matches in Cricsheet's JSON format (data version 1.x).
#pragma once

#include "ScoreService/PlayedMatch.hpp"

#include <expected>
#include <string>
#include <string_view>

namespace kestrow::service {

// The match of one file. Fails with one line that says where in the file something is wrong, and
// what: not JSON, a missing or mistyped value, an innings of a team that does not play, runs that
// no ball can bring.
std::expected<PlayedMatch, std::string> readCricsheet(std::string_view text);

}  // namespace kestrow::service
