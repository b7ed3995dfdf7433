#include "Kestrow/Qt/QtMainThread.hpp"
#include "Tests/Support/QtPrivateBus.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <thread>
#include <vector>

namespace kestrow::qt {
namespace {

using Clock = std::chrono::steady_clock;

TEST(QtMainThread, RunsWhatIsPostedInTheOrderOfTheCallsAndNotAtOnce) {
  QtMainThread mainThread;
  std::vector<int> out;
  mainThread.post([&] {
    out.push_back(1);
    mainThread.post([&] { out.push_back(3); });
  });
  mainThread.post([&] { out.push_back(2); });
  EXPECT_TRUE(out.empty());
  EXPECT_TRUE(eventually([&] { return out.size() == 3; }));
  EXPECT_EQ(out, (std::vector{1, 2, 3}));
}

TEST(QtMainThread, RunsWhatAnotherThreadPostsOnItsOwnThread) {
  QtMainThread mainThread;
  std::thread::id ranOn;
  std::thread other([&] { mainThread.post([&] { ranOn = std::this_thread::get_id(); }); });
  other.join();
  EXPECT_TRUE(eventually([&] { return ranOn != std::thread::id(); }));
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(QtMainThread, DropsWhatWasPostedWhenItGoes) {
  bool ran = false;
  {
    QtMainThread mainThread;
    mainThread.post([&] { ran = true; });
  }
  QCoreApplication::processEvents();
  EXPECT_FALSE(ran);
}

TEST(QtMainThread, EndsAShortWaitNeverEarly) {
  QtMainThread mainThread;
  for (const auto delay : {Seconds(0.0501), Seconds(0.0009), Seconds(0.0205)}) {
    const auto start = Clock::now();
    Seconds took{};
    const auto wait = mainThread.after(delay, [&] { took = Clock::now() - start; });
    EXPECT_TRUE(eventually([&] { return took > Seconds(0); }));
    EXPECT_GE(took, delay);
  }
}

TEST(QtMainThread, TakesAWaitOfNothingOrLessInTheNextTurn) {
  QtMainThread mainThread;
  int ran = 0;
  const auto negative = mainThread.after(Seconds(-5), [&] { ++ran; });
  const auto zero = mainThread.after(Seconds(0), [&] { ++ran; });
  const auto noNumber =
      mainThread.after(Seconds(std::numeric_limits<double>::quiet_NaN()), [&] { ++ran; });
  EXPECT_EQ(ran, 0);
  EXPECT_TRUE(eventually([&] { return ran == 3; }));
}

TEST(QtMainThread, ADestroyedWaitNeverRuns) {
  QtMainThread mainThread;
  bool cancelledRan = false;
  bool laterRan = false;
  auto cancelled = mainThread.after(Seconds(0), [&] { cancelledRan = true; });
  const auto later = mainThread.after(Seconds(0.01), [&] { laterRan = true; });
  cancelled.reset();
  EXPECT_TRUE(eventually([&] { return laterRan; }));
  EXPECT_FALSE(cancelledRan);
}

TEST(QtMainThread, AWaitMayBeReplacedFromInsideItsOwnAction) {
  QtMainThread mainThread;
  std::unique_ptr<DelayedAction> wait;
  int ran = 0;
  std::function<void()> again = [&] {
    if (++ran < 3) wait = mainThread.after(Seconds(0), again);
  };
  wait = mainThread.after(Seconds(0), again);
  EXPECT_TRUE(eventually([&] { return ran == 3; }));
}

TEST(QtMainThread, AWaitBeyondWhatQtCountsDoesNotEndAtOnce) {
  QtMainThread mainThread;
  bool ran = false;
  bool passed = false;
  const auto years = mainThread.after(std::chrono::years(300), [&] { ran = true; });
  const auto moment = mainThread.after(Seconds(0.05), [&] { passed = true; });
  EXPECT_TRUE(eventually([&] { return passed; }));
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace kestrow::qt
