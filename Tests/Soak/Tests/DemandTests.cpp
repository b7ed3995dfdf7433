#include "Tests/Soak/Demand.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace kestrow {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

constexpr Date now{};

MatchesResponse listWith(MatchPhase phase) {
  return records::live({records::match("m1", phase)});
}

Demand demandAfter(const std::optional<MatchesResponse>& answer) {
  Demand demand;
  demand.followed("m1");
  demand.polled(now, answer);
  demand.drawn(now, false);
  return demand;
}

TEST(Demand, IsAPollInAMinuteWhileTheMatchIsInPlayElseInFive) {
  EXPECT_THAT(demandAfter(listWith(MatchPhase::live)).waits(now), ElementsAre(60s, 60s));
  EXPECT_THAT(demandAfter(listWith(MatchPhase::inningsBreak)).waits(now), ElementsAre(60s, 60s));
  EXPECT_THAT(demandAfter(listWith(MatchPhase::notStarted)).waits(now), ElementsAre(60s, 300s));
  EXPECT_THAT(demandAfter(listWith(MatchPhase::finished)).waits(now), ElementsAre(60s, 300s));
  EXPECT_THAT(demandAfter(std::nullopt).waits(now), ElementsAre(60s, 300s));
  EXPECT_THAT(demandAfter(MatchesResponse{}).waits(now), ElementsAre(60s, 300s));
}

TEST(Demand, KeepsThePaceWhenAPollFails) {
  Demand demand = demandAfter(listWith(MatchPhase::live));
  demand.polled(now + 60s, std::nullopt);
  demand.drawn(now + 60s, false);
  EXPECT_THAT(demand.waits(now + 60s), ElementsAre(60s, 60s));
}

TEST(Demand, IsADrawingAtTheEndOfAnAlert) {
  Demand demand = demandAfter(listWith(MatchPhase::live));
  demand.drawn(now, true);
  EXPECT_THAT(demand.waits(now), ElementsAre(4s, 60s));
  demand.drawn(now + 1s, false);
  EXPECT_THAT(demand.waits(now + 1s), ElementsAre(3s, 59s));
  demand.drawn(now + 4s, false);
  EXPECT_THAT(demand.waits(now + 4s), ElementsAre(56s, 60s));
}

}  // namespace
}  // namespace kestrow
