#include "Kestrow/AppKit/AppKitMainThread.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#import "Kestrow/AppKit/Action.hpp"
#include "Tests/AppKit/MacLoop.hpp"

namespace kestrow::appkit {
namespace {

TEST(AppKitMainThread, RunsWhatIsPostedInOrderAndNotAtOnce) {
  AppKitMainThread mainThread;
  std::string order;
  mainThread.post([&] { order += "a"; });
  mainThread.post([&] { order += "b"; });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(runUntil([&] { return order.size() == 2; }));
  EXPECT_EQ(order, "ab");
}

TEST(AppKitMainThread, TakesPostsFromOtherThreads) {
  AppKitMainThread mainThread;
  std::thread::id runner;
  std::thread poster([&] { mainThread.post([&] { runner = std::this_thread::get_id(); }); });
  poster.join();
  EXPECT_TRUE(runUntil([&] { return runner != std::thread::id(); }));
  EXPECT_EQ(runner, std::this_thread::get_id());
}

TEST(AppKitMainThread, WaitsAsLongAsItIsAskedTo) {
  AppKitMainThread mainThread;
  const auto start = std::chrono::steady_clock::now();
  bool isDone = false;
  const auto timer = mainThread.after(Seconds(0.1), [&] { isDone = true; });
  EXPECT_TRUE(runUntil([&] { return isDone; }));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(99));
}

TEST(AppKitMainThread, ForgetsAnActionWithItsTimer) {
  AppKitMainThread mainThread;
  bool isRun = false;
  bool isLater = false;
  auto timer = mainThread.after(Seconds(0), [&] { isRun = true; });
  timer.reset();
  const auto later = mainThread.after(Seconds(0.02), [&] { isLater = true; });
  EXPECT_TRUE(runUntil([&] { return isLater; }));
  EXPECT_FALSE(isRun);
}

TEST(AppKitMainThread, LetsAnActionDestroyItsOwnTimer) {
  AppKitMainThread mainThread;
  bool isRun = false;
  std::unique_ptr<DelayedAction> timer;
  timer = mainThread.after(Seconds(0), [&] {
    timer.reset();
    isRun = true;
  });
  EXPECT_TRUE(runUntil([&] { return isRun; }));
}

// What stays until the pool around the caller is emptied.
void leaveBehind(const std::shared_ptr<int>& load) {
  [[maybe_unused]] KestrowAction* __autoreleasing carrier =
      [[KestrowAction alloc] initWithFunction:[load] {}];
}

TEST(AppKitMainThread, KeepsNothingThatAnActionLeftBehind) {
  AppKitMainThread mainThread;
  const auto load = std::make_shared<int>();
  long afterPost = 0;
  long afterTimer = 0;
  mainThread.post([&] { leaveBehind(load); });
  mainThread.post([&] { afterPost = load.use_count(); });
  const auto timer = mainThread.after(Seconds(0.01), [&] { leaveBehind(load); });
  const auto later = mainThread.after(Seconds(0.03), [&] { afterTimer = load.use_count(); });
  EXPECT_TRUE(runUntil([&] { return afterTimer != 0; }));
  EXPECT_EQ(afterPost, 1);
  EXPECT_EQ(afterTimer, 1);
}

}  // namespace
}  // namespace kestrow::appkit
