#include "KestrowCore/Task.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrow {
namespace {

Task<std::string> doubled(Pending<std::string> pending) {
  auto task = pending.task();
  std::string value = co_await task;
  co_return value + value;
}

Task<void> append(Pending<std::string> pending, std::vector<std::string>& out) {
  auto task = doubled(pending);
  std::string value = co_await task;
  out.push_back(std::move(value));
}

TEST(Task, RunsUpToItsFirstSuspensionAndOnWhenTheAnswerComes) {
  std::vector<std::string> out;
  const Pending<std::string> pending;
  TaskScope scope;
  scope.start(append(pending, out));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(scope.isIdle());
  pending.complete("ab");
  EXPECT_EQ(out, std::vector<std::string>{"abab"});
  EXPECT_TRUE(scope.isIdle());
}

TEST(Task, AnAnswerThatIsThereAlreadyDoesNotSuspend) {
  std::vector<std::string> out;
  const Pending<std::string> pending;
  pending.complete("x");
  pending.complete("ignored");
  TaskScope scope;
  scope.start(append(pending, out));
  EXPECT_EQ(out, std::vector<std::string>{"xx"});
}

TEST(Task, EndingTheScopeAbandonsWhatItsTasksWaitFor) {
  std::vector<std::string> out;
  const Pending<std::string> pending;
  int abandoned = 0;
  pending.onAbandoned([&] { ++abandoned; });
  {
    TaskScope scope;
    scope.start(append(pending, out));
    EXPECT_EQ(abandoned, 0);
  }
  EXPECT_EQ(abandoned, 1);
  pending.complete("too late");
  EXPECT_TRUE(out.empty());
}

TEST(Task, TasksOfAScopeEndInTheOrderOfTheirAnswers) {
  std::vector<std::string> out;
  const Pending<std::string> first;
  const Pending<std::string> second;
  TaskScope scope;
  scope.start(append(first, out));
  scope.start(append(second, out));
  second.complete("2");
  first.complete("1");
  EXPECT_EQ(out, (std::vector<std::string>{"22", "11"}));
}

}  // namespace
}  // namespace kestrow
