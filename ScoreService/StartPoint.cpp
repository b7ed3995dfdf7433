#include "ScoreService/StartPoint.hpp"

#include "ScoreService/Text.hpp"

#include <optional>

namespace kestrow::service {
namespace {

constexpr Seconds aheadOfStart{600};
constexpr std::int64_t maxOvers = 50;

std::optional<std::int64_t> ballsOfOvers(std::string_view text) {
  const auto dot = text.find('.');
  const auto overs = wholeNumber(text.substr(0, dot));
  const auto balls = dot == std::string_view::npos ? 0 : wholeNumber(text.substr(dot + 1));
  if (!overs || !balls || *overs < 0 || *overs > maxOvers || *balls < 0 || *balls > 5) {
    return std::nullopt;
  }
  return *overs * 6 + *balls;
}

}  // namespace

std::expected<StartPoint, std::string> parseStartPoint(std::string_view text) {
  using enum StartPoint::Stage;
  constexpr std::string_view chaseAt = "chase:";
  if (text == "before") return StartPoint{before};
  if (text == "break") return StartPoint{inningsBreak};
  if (text == "chase") return StartPoint{chase};
  if (text == "result") return StartPoint{result};
  const bool isChase = text.starts_with(chaseAt);
  const auto balls = ballsOfOvers(isChase ? text.substr(chaseAt.size()) : text);
  if (!balls) {
    return std::unexpected(
        "a start point is before, break, chase, result, overs (0 to 50, such as "
        "12.3) or chase: and overs, not \"" +
        std::string(text) + "\"");
  }
  return StartPoint{isChase ? chase : firstInnings, *balls};
}

Seconds startTime(const StartPoint& point, const MatchScript& script) {
  const auto count = script.match().innings.size();
  switch (point.stage) {
    case StartPoint::Stage::before:
      return -aheadOfStart;
    case StartPoint::Stage::firstInnings:
      return count > 0 ? script.timeOfBall(0, point.balls) : Seconds(0);
    case StartPoint::Stage::inningsBreak:
      return count > 1 ? script.inningsEnd(0) : script.end();
    case StartPoint::Stage::chase:
      return count > 1 ? script.timeOfBall(1, point.balls) : script.end();
    case StartPoint::Stage::result:
      break;
  }
  return script.end();
}

}  // namespace kestrow::service
