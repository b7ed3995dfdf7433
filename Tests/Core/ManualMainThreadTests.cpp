#include "Tests/Support/ManualMainThread.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kestrow {
namespace {

using std::chrono::seconds;

TEST(ManualMainThread, RunsNothingUntilItIsTold) {
  ManualMainThread mainThread;
  std::string ran;
  const auto wait = mainThread.after(Seconds(0), [&] { ran += "b"; });
  mainThread.post([&] { ran += "a"; });
  EXPECT_EQ(ran, "");
  mainThread.runPosted();
  EXPECT_EQ(ran, "a");
  mainThread.advance(Seconds(0));
  EXPECT_EQ(ran, "ab");
}

TEST(ManualMainThread, RunsWhatAPostedActionPosts) {
  ManualMainThread mainThread;
  std::string ran;
  mainThread.post([&] {
    ran += "a";
    mainThread.post([&] { ran += "c"; });
  });
  mainThread.post([&] { ran += "b"; });
  mainThread.runPosted();
  EXPECT_EQ(ran, "abc");
}

TEST(ManualMainThread, RunsDueActionsInTheOrderOfTheirTimesWithTheClockAtEach) {
  const Date start{seconds(1000)};
  ManualMainThread mainThread(start);
  std::vector<Seconds> times;
  const auto note = [&] { times.emplace_back(mainThread.now() - start); };
  const auto late = mainThread.after(Seconds(3), note);
  const auto early = mainThread.after(Seconds(1.5), note);
  const auto beyond = mainThread.after(Seconds(5.001), note);
  mainThread.advance(Seconds(5));
  EXPECT_EQ(times, (std::vector<Seconds>{Seconds(1.5), Seconds(3)}));
  EXPECT_EQ(mainThread.now(), start + seconds(5));
  EXPECT_EQ(mainThread.clock()(), start + seconds(5));
  EXPECT_EQ(mainThread.nextDelay(), Seconds(0.001));
}

TEST(ManualMainThread, RunsActionsOfTheSameTimeInTheOrderOfTheirSetting) {
  ManualMainThread mainThread;
  std::string ran;
  const auto first = mainThread.after(Seconds(1), [&] { ran += "1"; });
  const auto second = mainThread.after(Seconds(1), [&] { ran += "2"; });
  mainThread.advance(Seconds(1));
  EXPECT_EQ(ran, "12");
}

TEST(ManualMainThread, RunsAnActionThatIsSetOnTheWay) {
  ManualMainThread mainThread;
  std::string ran;
  std::unique_ptr<DelayedAction> next;
  const auto first = mainThread.after(Seconds(1), [&] {
    ran += "1";
    next = mainThread.after(Seconds(2), [&] { ran += "2"; });
  });
  mainThread.advance(Seconds(2.9));
  EXPECT_EQ(ran, "1");
  mainThread.advance(Seconds(0.1));
  EXPECT_EQ(ran, "12");
}

TEST(ManualMainThread, DestroyingADelayedActionCancelsIt) {
  ManualMainThread mainThread;
  bool ran = false;
  auto wait = mainThread.after(Seconds(1), [&] { ran = true; });
  EXPECT_EQ(mainThread.delays(), std::vector<Seconds>{Seconds(1)});
  wait.reset();
  EXPECT_EQ(mainThread.nextDelay(), std::nullopt);
  mainThread.advance(Seconds(2));
  EXPECT_FALSE(ran);
}

TEST(ManualMainThread, AnActionMayDestroyItself) {
  ManualMainThread mainThread;
  const auto witness = std::make_shared<int>(1);
  std::unique_ptr<DelayedAction> wait;
  wait = mainThread.after(Seconds(1), [&wait, witness] {
    wait.reset();
    EXPECT_EQ(*witness, 1);
  });
  mainThread.advance(Seconds(1));
  EXPECT_EQ(wait, nullptr);
  EXPECT_EQ(witness.use_count(), 1);
}

TEST(ManualMainThread, ADelayBelowZeroCountsAsNoneAndAnEndlessOneNeverEnds) {
  ManualMainThread mainThread;
  const auto past = mainThread.after(Seconds(-5), [] {});
  const auto undefined = mainThread.after(Seconds(std::numeric_limits<double>::quiet_NaN()), [] {});
  const auto endless = mainThread.after(Seconds(std::numeric_limits<double>::infinity()), [] {});
  const std::vector<Seconds> delays = mainThread.delays();
  ASSERT_EQ(delays.size(), 3U);
  EXPECT_EQ(delays[0], Seconds(0));
  EXPECT_EQ(delays[1], Seconds(0));
  EXPECT_GT(delays[2], std::chrono::years(99));
}

TEST(ManualMainThread, AWaitMayOutliveIt) {
  auto mainThread = std::make_unique<ManualMainThread>();
  auto wait = mainThread->after(Seconds(1), [] {});
  mainThread.reset();
  wait.reset();
}

TEST(ManualMainThread, TakesPostsFromOtherThreads) {
  ManualMainThread mainThread;
  int ran = 0;
  std::thread other([&] {
    for (int i = 0; i < 1000; ++i) mainThread.post([&] { ++ran; });
  });
  while (ran < 1000) ASSERT_TRUE(mainThread.awaitPosted());
  other.join();
  EXPECT_EQ(ran, 1000);
}

}  // namespace
}  // namespace kestrow
