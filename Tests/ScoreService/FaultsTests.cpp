#include "ScoreService/Faults.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace kestrow::service {
namespace {

using Kind = Fault::Kind;
using When = Fault::When;

// Which of the first `count` requests for the path meet a fault other than a latency.
std::vector<int> met(FaultPlan& plan, int count, const char* path = "/api/matches") {
  std::vector<int> numbers;
  for (int i = 1; i <= count; ++i) {
    if (plan.next(path).fault) numbers.push_back(i);
  }
  return numbers;
}

FaultPlan plan(std::initializer_list<const char*> texts, std::uint64_t seed = 1) {
  std::vector<Fault> faults;
  for (const char* text : texts) faults.push_back(*parseFault(text));
  return {std::move(faults), seed};
}

TEST(Faults, ReadsEachKind) {
  EXPECT_EQ(parseFault("latency=2.5"), (Fault{.kind = Kind::latency, .seconds = 2.5}));
  EXPECT_EQ(parseFault("status=503"), (Fault{.kind = Kind::status, .status = 503}));
  EXPECT_EQ(parseFault("drop"), (Fault{.kind = Kind::drop}));
  EXPECT_EQ(parseFault("truncate"), (Fault{.kind = Kind::truncate}));
  EXPECT_EQ(parseFault("garbage"), (Fault{.kind = Kind::garbage}));
  EXPECT_EQ(parseFault("oversize"), (Fault{.kind = Kind::oversize, .bytes = 4194305}));
  EXPECT_EQ(parseFault("oversize=100"), (Fault{.kind = Kind::oversize, .bytes = 100}));
  EXPECT_EQ(parseFault("drip=0.1"), (Fault{.kind = Kind::drip, .seconds = 0.1}));
  EXPECT_EQ(parseFault("redirect=/a?b=c"), (Fault{.kind = Kind::redirect, .location = "/a?b=c"}));
}

TEST(Faults, ReadsWhenAndWhere) {
  EXPECT_EQ(parseFault("drop@every:3@/api/match"),
            (Fault{.kind = Kind::drop, .when = When::every, .count = 3, .path = "/api/match"}));
  EXPECT_EQ(parseFault("drop@/x@first:1"),
            (Fault{.kind = Kind::drop, .when = When::first, .count = 1, .path = "/x"}));
  EXPECT_EQ(parseFault("drop@after:2"),
            (Fault{.kind = Kind::drop, .when = When::after, .count = 2}));
  EXPECT_EQ(parseFault("drop@rate:0.25"),
            (Fault{.kind = Kind::drop, .when = When::rate, .rate = 0.25}));
}

TEST(Faults, RefusesWhatItCannotDo) {
  for (const char* text : {"",
                           "dorp",
                           "latency",
                           "latency=",
                           "latency=-1",
                           "latency=3601",
                           "status",
                           "status=199",
                           "status=600",
                           "status=x",
                           "drop=1",
                           "oversize=1",
                           "oversize=x",
                           "drip",
                           "redirect",
                           "redirect=",
                           "drop@",
                           "drop@every",
                           "drop@every:0",
                           "drop@first:-1",
                           "drop@rate:1.5",
                           "drop@rate:",
                           "drop@never:1"}) {
    EXPECT_FALSE(parseFault(text).has_value()) << text;
  }
  EXPECT_EQ(parseFault("status=99").error(), "fault status takes a status, 200 to 599");
}

TEST(Faults, AreDueWhenTheySay) {
  auto always = plan({"drop"});
  EXPECT_EQ(met(always, 3), (std::vector<int>{1, 2, 3}));
  auto every = plan({"drop@every:3"});
  EXPECT_EQ(met(every, 7), (std::vector<int>{3, 6}));
  auto first = plan({"drop@first:2"});
  EXPECT_EQ(met(first, 4), (std::vector<int>{1, 2}));
  auto after = plan({"drop@after:2"});
  EXPECT_EQ(met(after, 4), (std::vector<int>{3, 4}));
}

TEST(Faults, ARateMeetsTheSameRequestsForTheSameSeed) {
  auto one = plan({"drop@rate:0.3"}, 5);
  auto same = plan({"drop@rate:0.3"}, 5);
  auto other = plan({"drop@rate:0.3"}, 6);
  const auto numbers = met(one, 1000);
  EXPECT_EQ(numbers, met(same, 1000));
  EXPECT_NE(numbers, met(other, 1000));
  EXPECT_GT(numbers.size(), 240U);
  EXPECT_LT(numbers.size(), 360U);
  auto never = plan({"drop@rate:0"});
  EXPECT_TRUE(met(never, 100).empty());
  auto certain = plan({"drop@rate:1"});
  EXPECT_EQ(met(certain, 100).size(), 100U);
}

TEST(Faults, CountTheRequestsOfTheirOwnPath) {
  auto faulty = plan({"drop@every:2@/api/match"});
  EXPECT_TRUE(met(faulty, 4, "/api/matches").empty());
  EXPECT_EQ(met(faulty, 4, "/api/match"), (std::vector<int>{2, 4}));
}

TEST(Faults, LatenciesAddUpAndTheFirstOfTheOthersIsChosen) {
  auto faulty = plan({"latency=1", "garbage@first:1", "latency=0.5@every:2", "truncate"});
  const auto first = faulty.next("/");
  EXPECT_EQ(first.latency, Seconds(1));
  EXPECT_EQ(first.fault->kind, Kind::garbage);
  const auto second = faulty.next("/");
  EXPECT_EQ(second.latency, Seconds(1.5));
  EXPECT_EQ(second.fault->kind, Kind::truncate);
}

}  // namespace
}  // namespace kestrow::service
