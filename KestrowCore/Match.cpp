#include "KestrowCore/Match.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ranges>

namespace kestrow {

namespace {

constexpr std::int64_t ballsPerOver = 6;
constexpr std::int64_t allOut = 10;

const Innings* latestOf(const std::vector<Innings>& innings, std::string_view team) {
  const auto latest = std::ranges::find(std::views::reverse(innings), team, &Innings::team);
  return latest == innings.rend() ? nullptr : &*latest;
}

// Of the two teams' latest innings, whether the second team's is the one in progress or played
// last.
bool secondIsCurrent(const Innings& first, const Innings& second) {
  const bool firstIsOut = first.wickets >= allOut;
  const bool secondIsOut = second.wickets >= allOut;
  if (firstIsOut != secondIsOut) return firstIsOut;
  const auto firstBalls = first.balls();
  const auto secondBalls = second.balls();
  if (!firstBalls || !secondBalls) return !firstBalls;
  // The side with fewer balls faced is the one chasing.
  return *secondBalls <= *firstBalls;
}

}  // namespace

bool areCountable(double overs) {
  // The largest double that is below 2^63 / 6. It is whole, and so are all beyond it.
  constexpr double largest = 1537228672809129216.0;
  return std::abs(overs) <= largest;  // false when it is not a number
}

std::optional<std::int64_t> Innings::balls() const {
  if (!overs) return std::nullopt;
  if (!areCountable(*overs)) std::abort();
  const double whole = std::floor(*overs);
  const double part = std::round((*overs - whole) * 10);
  return static_cast<std::int64_t>(whole) * ballsPerOver + static_cast<std::int64_t>(part);
}

std::optional<Innings> Match::currentInnings() const {
  const auto* first = latestOf(innings, team1.shortName);
  const auto* second = latestOf(innings, team2.shortName);
  if (first && second) return secondIsCurrent(*first, *second) ? *second : *first;
  if (innings.empty()) return std::nullopt;
  return innings.back();
}

std::optional<Match> MatchesResponse::match(std::string_view id) const {
  for (const auto* list : {&live, &upcoming, &finished}) {
    const auto found = std::ranges::find(*list, id, &Match::id);
    if (found != list->end()) return *found;
  }
  return std::nullopt;
}

}  // namespace kestrow
