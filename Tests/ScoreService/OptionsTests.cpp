#include "ScoreService/Options.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kestrow::service {
namespace {

using Arguments = std::vector<std::string>;
using Stage = StartPoint::Stage;

TEST(Options, WithoutArgumentsPlaysASimulationOnTheUsualPort) {
  const auto options = parseOptions({});
  ASSERT_TRUE(options.has_value());
  EXPECT_EQ(options->server.address, "127.0.0.1");
  EXPECT_EQ(options->server.port, 8787);
  EXPECT_EQ(options->server.seed, 1U);
  EXPECT_TRUE(options->server.faults.empty());
  EXPECT_TRUE(options->replay.empty());
  EXPECT_EQ(options->feed.speed, 1.0);
  EXPECT_EQ(options->feed.start, (StartPoint{Stage::firstInnings, 48}));
  EXPECT_EQ(options->feed.flags, FeedFlags{});
  EXPECT_EQ(options->now, std::nullopt);
  EXPECT_FALSE(options->isFrozen);
}

TEST(Options, ReadsEachOption) {
  const auto options =
      parseOptions({"--address", "::1", "--port=0", "--seed", "42", "--speed", "2.5", "--start",
                    "chase:4.2", "--now", "2026-04-12T14:00:00Z", "--frozen", "--sample", "--stale",
                    "--fault", "drop@every:2", "--fault", "latency=1"});
  ASSERT_TRUE(options.has_value()) << options.error().text;
  EXPECT_EQ(options->server.address, "::1");
  EXPECT_EQ(options->server.port, 0);
  EXPECT_EQ(options->server.seed, 42U);
  EXPECT_EQ(options->feed.speed, 2.5);
  EXPECT_EQ(options->feed.start, (StartPoint{Stage::chase, 26}));
  EXPECT_EQ(options->now, parseInternetDate("2026-04-12T14:00:00Z"));
  EXPECT_TRUE(options->isFrozen);
  EXPECT_EQ(options->feed.flags, (FeedFlags{.sample = true, .stale = true}));
  EXPECT_EQ(options->server.faults,
            (std::vector<Fault>{*parseFault("drop@every:2"), *parseFault("latency=1")}));
}

TEST(Options, AReplayTakesSeveralFilesAndBeginsAtTheFirstBall) {
  const auto options = parseOptions({"--replay", "a.json", "b.json", "--speed", "60"});
  ASSERT_TRUE(options.has_value()) << options.error().text;
  EXPECT_EQ(options->replay, (std::vector<std::filesystem::path>{"a.json", "b.json"}));
  EXPECT_EQ(options->feed.start, (StartPoint{Stage::firstInnings, 0}));
  EXPECT_EQ(options->feed.speed, 60.0);
}

TEST(Options, HelpTellsEveryOptionAndIsNoFailure) {
  const auto options = parseOptions({"--help"});
  ASSERT_FALSE(options.has_value());
  EXPECT_EQ(options.error().code, 0);
  for (const char* word :
       {"--address", "--port",    "--seed",  "--speed", "--start",  "--replay", "--now",
        "--frozen",  "--sample",  "--stale", "--fault", "before",   "break",    "chase",
        "result",    "latency=",  "status=", "drop",    "truncate", "garbage",  "oversize",
        "drip=",     "redirect=", "every:N", "first:N", "after:N",  "rate:P",   "SIGTERM"}) {
    EXPECT_NE(options.error().text.find(word), std::string::npos) << word;
  }
}

TEST(Options, AWrongOptionIsOneLineAndACodeThatIsNotZero) {
  for (const Arguments& arguments : {Arguments{"--bogus"},
                                     {"extra"},
                                     {"--port", "65536"},
                                     {"--port", "-1"},
                                     {"--port", "x"},
                                     {"--port"},
                                     {"--seed", "-1"},
                                     {"--speed", "0"},
                                     {"--speed", "-1"},
                                     {"--speed", "nan"},
                                     {"--speed", "100001"},
                                     {"--start", "later"},
                                     {"--now", "yesterday"},
                                     {"--now", "9999-06-01T00:00:00Z"},
                                     {"--now", "0000-06-01T00:00:00Z"},
                                     {"--replay"},
                                     {"--fault", "dorp"},
                                     {"--fault", "drop@never:\n1"},
                                     {"--fault"}}) {
    const auto options = parseOptions(arguments);
    ASSERT_FALSE(options.has_value()) << testing::PrintToString(arguments);
    EXPECT_EQ(options.error().code, 2);
    EXPECT_EQ(options.error().text.find("kestrow-score-service: "), 0U);
    EXPECT_EQ(std::ranges::count(options.error().text, '\n'), 0) << options.error().text;
  }
}

TEST(Options, TheClockBeginsWhereItIsToldAndStandsStillWhenFrozen) {
  Options options;
  options.now = parseInternetDate("2026-04-12T14:00:00Z");
  const Now running = clockOf(options);
  EXPECT_GE(running(), *options.now);
  EXPECT_LT(running(), *options.now + std::chrono::minutes(1));
  options.isFrozen = true;
  const Now frozen = clockOf(options);
  EXPECT_EQ(frozen(), *options.now);
  options.now.reset();
  const Now frozenNow = clockOf(options);
  EXPECT_EQ(frozenNow(), frozenNow());
  EXPECT_GT(frozenNow(), *parseInternetDate("2025-01-01T00:00:00Z"));
}

TEST(Options, TheFeedIsASimulationOrTheFiles) {
  const Date origin = *parseInternetDate("2026-04-12T14:00:00Z");
  Options options;
  EXPECT_EQ(feedOf(options, origin)->all().size(), 13U);
  options.replay = {KESTROW_FIXTURES "/cricsheet/dls.json"};
  EXPECT_EQ(feedOf(options, origin)->all().size(), 1U);
  options.replay = {"/nowhere.json"};
  EXPECT_FALSE(feedOf(options, origin).has_value());
}

}  // namespace
}  // namespace kestrow::service
