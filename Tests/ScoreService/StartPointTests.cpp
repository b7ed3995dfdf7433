#include "ScoreService/Simulation.hpp"
#include "ScoreService/StartPoint.hpp"

#include <gtest/gtest.h>

namespace kestrow::service {
namespace {

using Stage = StartPoint::Stage;

MatchScript script() {
  return MatchScript(simulateMatch(3, {"Mumbai Indians", "MI"}, {"Chennai Super Kings", "CSK"}));
}

TEST(StartPoint, ReadsEachStage) {
  EXPECT_EQ(parseStartPoint("before"), (StartPoint{Stage::before, 0}));
  EXPECT_EQ(parseStartPoint("break"), (StartPoint{Stage::inningsBreak, 0}));
  EXPECT_EQ(parseStartPoint("chase"), (StartPoint{Stage::chase, 0}));
  EXPECT_EQ(parseStartPoint("result"), (StartPoint{Stage::result, 0}));
}

TEST(StartPoint, ReadsOversOfEitherInnings) {
  EXPECT_EQ(parseStartPoint("0"), (StartPoint{Stage::firstInnings, 0}));
  EXPECT_EQ(parseStartPoint("12.3"), (StartPoint{Stage::firstInnings, 75}));
  EXPECT_EQ(parseStartPoint("50"), (StartPoint{Stage::firstInnings, 300}));
  EXPECT_EQ(parseStartPoint("chase:4.5"), (StartPoint{Stage::chase, 29}));
}

TEST(StartPoint, RefusesAnythingElse) {
  for (const char* text : {"", "51", "-1", "1.6", "1.-1", "1.", ".1", "chase:", "chase:x", "Before",
                           "12.3.1", "chase4"}) {
    EXPECT_FALSE(parseStartPoint(text).has_value()) << text;
  }
}

TEST(StartPoint, IsATimeOfTheMatch) {
  const MatchScript match = script();
  const auto stand = [&](const char* text) {
    return match.standAt(startTime(*parseStartPoint(text), match));
  };
  EXPECT_EQ(startTime(*parseStartPoint("before"), match), Seconds(-600));
  EXPECT_EQ(stand("before").phase, MatchPhase::notStarted);
  EXPECT_EQ(stand("0").innings.at(0).overs, 0.0);
  EXPECT_EQ(stand("12.3").innings.at(0).overs, 12.3);
  EXPECT_EQ(stand("12.3").phase, MatchPhase::live);
  EXPECT_EQ(stand("break").phase, MatchPhase::inningsBreak);
  EXPECT_EQ(stand("break").innings.size(), 1U);
  EXPECT_EQ(stand("chase").phase, MatchPhase::live);
  EXPECT_EQ(stand("chase").innings.at(1).overs, 0.0);
  EXPECT_EQ(stand("chase:5").innings.at(1).overs, 5.0);
  EXPECT_EQ(stand("result").phase, MatchPhase::finished);
}

TEST(StartPoint, BeyondAnInningsIsItsEnd) {
  const MatchScript match = script();
  EXPECT_EQ(startTime(*parseStartPoint("50"), match), match.inningsEnd(0));
  EXPECT_EQ(startTime(*parseStartPoint("chase:50"), match), match.inningsEnd(1));
}

TEST(StartPoint, OfAMatchThatNeverGotThereIsItsEnd) {
  PlayedMatch washedOut;
  const MatchScript empty(washedOut);
  for (const char* text : {"break", "chase", "result"}) {
    EXPECT_EQ(startTime(*parseStartPoint(text), empty), empty.end()) << text;
  }
  EXPECT_EQ(startTime(*parseStartPoint("3"), empty), Seconds(0));
}

}  // namespace
}  // namespace kestrow::service
