#include "ScoreService/ResultText.hpp"

#include <cstddef>
#include <optional>

namespace kestrow::service {
namespace {

const std::string& nameOf(const PlayedMatch& match, std::size_t team) {
  return team == 0 ? match.team1.name : match.team2.name;
}

// The winner of the pair of super-over innings that starts at `first`; nothing when level.
std::optional<std::size_t> superOverWinner(const PlayedMatch& match, std::size_t first) {
  if (first + 1 >= match.innings.size()) return std::nullopt;
  const std::int64_t before = tally(match.innings[first]).runs;
  const std::int64_t after = tally(match.innings[first + 1]).runs;
  if (before == after) return std::nullopt;
  return before > after ? match.innings[first].team : match.innings[first + 1].team;
}

}  // namespace

std::string counted(std::int64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string chaseText(const std::string& team, std::int64_t runsNeeded, std::int64_t ballsLeft) {
  return team + " need " + counted(runsNeeded, "run") + " in " + counted(ballsLeft, "ball");
}

std::string resultText(const PlayedMatch& match) {
  if (match.innings.size() < 2) return "No result";
  const PlayedInnings& chase = match.innings[1];
  const Tally set = tally(match.innings[0]);
  const Tally chased = tally(chase);
  if (chased.runs > set.runs) {
    const std::int64_t ballsLeft = chase.maxBalls - chased.legalBalls;
    const std::string left = ballsLeft > 0 ? " (with " + counted(ballsLeft, "ball") + " left)" : "";
    return nameOf(match, chase.team) + " won by " + counted(10 - chased.wickets, "wicket") + left;
  }
  if (chased.runs < set.runs) {
    return nameOf(match, match.innings[0].team) + " won by " +
           counted(set.runs - chased.runs, "run");
  }
  const std::size_t last = match.innings.size() - (match.innings.size() >= 4 ? 2 : 0);
  if (const auto winner = superOverWinner(match, last)) {
    return "Match tied (" + nameOf(match, *winner) + " won the Super Over)";
  }
  return "Match tied";
}

}  // namespace kestrow::service
