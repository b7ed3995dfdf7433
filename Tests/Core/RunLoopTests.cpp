#include "KestrowCore/RunLoop.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <memory>
#include <string>
#include <thread>

namespace kestrow {
namespace {

// Far more than any of these tests takes: it only ends a test that hangs.
constexpr Seconds patience{10};

TEST(RunLoop, RunsPostedActionsInOrderUntilItIsStopped) {
  RunLoop loop;
  std::string ran;
  loop.post([&] { ran += "a"; });
  loop.post([&] {
    ran += "b";
    loop.post([&] { ran += "d"; });
  });
  loop.post([&] { ran += "c"; });
  loop.post([&] { loop.stop(); });
  loop.run();
  EXPECT_EQ(ran, "abc");
  loop.post([&] { loop.stop(); });
  loop.run();
  EXPECT_EQ(ran, "abcd");
}

TEST(RunLoop, AStopBeforeTheRunEndsItAtOnce) {
  RunLoop loop;
  bool ran = false;
  loop.post([&] { ran = true; });
  loop.stop();
  loop.run();
  EXPECT_FALSE(ran);
  EXPECT_TRUE(loop.runUntil([&] { return ran; }, patience));
}

TEST(RunLoop, RunsDelayedActionsInTheOrderOfTheirTimesAndNotBeforeThem) {
  RunLoop loop;
  std::string ran;
  const auto start = std::chrono::steady_clock::now();
  Seconds took{0};
  const auto late = loop.after(Seconds(0.03), [&] {
    ran += "c";
    took = std::chrono::steady_clock::now() - start;
    loop.stop();
  });
  const auto early = loop.after(Seconds(0.01), [&] { ran += "b"; });
  const auto past = loop.after(Seconds(-1), [&] { ran += "a"; });
  loop.run();
  EXPECT_EQ(ran, "abc");
  EXPECT_GE(took, Seconds(0.03));
}

TEST(RunLoop, DestroyingADelayedActionCancelsIt) {
  RunLoop loop;
  bool ran = false;
  auto cancelled = loop.after(Seconds(0.001), [&] { ran = true; });
  const auto later = loop.after(Seconds(0.002), [&] { loop.stop(); });
  cancelled.reset();
  loop.run();
  EXPECT_FALSE(ran);
}

TEST(RunLoop, ADelayedActionMayOutliveTheLoop) {
  auto loop = std::make_unique<RunLoop>();
  const auto held = std::make_shared<int>(0);
  auto wait = loop->after(Seconds(1), [held] {});
  loop.reset();
  wait.reset();
  EXPECT_EQ(held.use_count(), 1);
}

TEST(RunLoop, LooksAtTheConditionAfterEachAction) {
  RunLoop loop;
  int ran = 0;
  for (int i = 0; i < 5; ++i) loop.post([&] { ++ran; });
  EXPECT_TRUE(loop.runUntil([&] { return ran == 3; }, patience));
  EXPECT_EQ(ran, 3);
}

TEST(RunLoop, GivesUpWhenTheTimeIsUp) {
  RunLoop loop;
  const auto start = std::chrono::steady_clock::now();
  const auto endless = loop.after(Seconds(std::numeric_limits<double>::infinity()), [] {});
  EXPECT_FALSE(loop.runUntil([] { return false; }, Seconds(0.02)));
  EXPECT_GE(std::chrono::steady_clock::now() - start, Seconds(0.02));
}

TEST(RunLoop, PostedAndDueActionsTakeTurns) {
  RunLoop loop;
  std::string ran;
  std::unique_ptr<DelayedAction> wait;
  std::function<void()> again = [&] {
    ran += "d";
    wait = loop.after(Seconds(0), again);
  };
  std::function<void()> postAgain = [&] {
    ran += "p";
    loop.post(postAgain);
  };
  again();
  loop.post(postAgain);
  ran.clear();
  EXPECT_TRUE(loop.runUntil([&] { return ran.size() == 6; }, patience));
  EXPECT_EQ(ran, "dpdpdp");
}

TEST(RunLoop, WakesForPostsAndStopsFromOtherThreads) {
  RunLoop loop;
  int ran = 0;
  std::thread other([&] {
    for (int i = 0; i < 1000; ++i) loop.post([&] { ++ran; });
    loop.post([&] { loop.stop(); });
  });
  loop.run();
  other.join();
  EXPECT_EQ(ran, 1000);
}

TEST(RunLoop, DropsWhatItDidNotReach) {
  const auto held = std::make_shared<int>(0);
  {
    RunLoop loop;
    loop.post([held] { ++*held; });
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(*held, 0);
}

}  // namespace
}  // namespace kestrow
