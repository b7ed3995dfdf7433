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

std::optional<std::int64_t> ballsInOvers(double overs) {
  const double whole = std::floor(overs);
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (std::isnan(whole) || whole < -limit || whole >= limit) return std::nullopt;
  const auto part = static_cast<std::int64_t>(std::round((overs - whole) * 10));
  std::int64_t balls = 0;
  if (__builtin_mul_overflow(static_cast<std::int64_t>(whole), ballsPerOver, &balls) ||
      __builtin_add_overflow(balls, part, &balls)) {
    return std::nullopt;
  }
  return balls;
}

std::optional<std::int64_t> Innings::balls() const {
  if (!overs) return std::nullopt;
  const auto balls = ballsInOvers(*overs);
  if (!balls) std::abort();
  return balls;
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
