#include "ScoreService/PlayedMatch.hpp"

namespace kestrow::service {

Tally tally(const PlayedInnings& innings) {
  Tally sum{.runs = innings.runsBefore + innings.runsAfter, .wickets = 0, .legalBalls = 0};
  for (const Ball& ball : innings.balls) {
    sum.runs += ball.runs;
    sum.wickets += static_cast<std::int64_t>(ball.out.size());
    sum.legalBalls += ball.isLegal ? 1 : 0;
  }
  return sum;
}

double oversFromBalls(std::int64_t legalBalls) {
  // One division, so that the number is the double nearest to its decimal text.
  const std::int64_t tenths = (legalBalls / 6) * 10 + legalBalls % 6;
  return static_cast<double>(tenths) / 10.0;
}

}  // namespace kestrow::service
