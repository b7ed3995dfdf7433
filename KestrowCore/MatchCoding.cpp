#include "KestrowCore/MatchCoding.hpp"

#include <array>
#include <cstddef>
#include <utility>

namespace kestrow {

namespace {

constexpr std::array<std::pair<MatchPhase, std::string_view>, 4> phaseTexts{{
    {MatchPhase::live, "live"},
    {MatchPhase::inningsBreak, "innings break"},
    {MatchPhase::notStarted, "not started"},
    {MatchPhase::finished, "finished"},
}};

}  // namespace

std::string encode(const MatchesResponse& response) {
  return json::encodeReplacing(response);
}
std::string encode(const MatchResponse& response) {
  return json::encodeReplacing(response);
}

namespace json {

const char* refuseUncountable(const std::optional<double>& overs) {
  return !overs || areCountable(*overs) ? nullptr : "the balls in these overs can't be counted";
}

std::string Text<Date>::refusal(std::string_view text) {
  return "Bad date " + std::string(text);
}

std::optional<MatchPhase> Text<MatchPhase>::parse(std::string_view text) {
  for (const auto& [phase, phaseText] : phaseTexts) {
    if (phaseText == text) return phase;
  }
  return std::nullopt;
}

std::string Text<MatchPhase>::refusal(std::string_view text) {
  return "unknown match phase \"" + std::string(text) + '"';
}

std::string Text<MatchPhase>::format(MatchPhase phase) {
  return std::string(phaseTexts.at(static_cast<std::size_t>(phase)).second);
}

}  // namespace json
}  // namespace kestrow
