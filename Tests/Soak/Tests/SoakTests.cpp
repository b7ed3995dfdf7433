// A day of the program in quickened time, and that what would be wrong with it is noticed.
#include "Tests/Soak/Soak.hpp"
#include "Tests/Support/Sanitizers.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

TEST(Soak, ADayWithAFailingServiceLeavesNothingBehindAndWakesOnlyWhenDue) {
  SoakTolerance tolerance;
  // Freed memory is kept back there, so that its use is noticed.
  if (isAddressSanitized) tolerance.residentBytes = std::numeric_limits<std::uint32_t>::max();
  const SoakReport report = soak({.length = 24h, .faults = usualFaults()});
  EXPECT_THAT(report.mistakes, IsEmpty());
  EXPECT_THAT(judge(report, tolerance), IsEmpty());
  // A night of seven hours and the minute and a half by which the clock was set are no time awake.
  EXPECT_EQ(report.nights, 1);
  EXPECT_NEAR(static_cast<double>(report.minutesAwake), 17 * 60, 5);
  EXPECT_EQ(report.samples.size(), 17U);
  EXPECT_GE(report.picks, 1);
  EXPECT_GT(report.alerts, 50);
  EXPECT_GT(report.failedPolls, 50);
  EXPECT_GT(report.polls, 2 * report.failedPolls);
}

// Two hours with an alert in which nothing is wrong.
SoakReport goodReport() {
  SoakReport report{.minutesAwake = 120,
                    .wakeUps = 121,
                    .alerts = 1,
                    .polls = 100,
                    .keyEventRequests = 101,
                    .picks = 2,
                    .nights = 1};
  const Measures running{.heapBytes = 1000, .residentBytes = 5000, .openFiles = 8, .threads = 2};
  report.samples = {{1, running}, {2, running}};
  return report;
}

TEST(SoakJudgement, FindsNothingWrongUpToTheTolerance) {
  SoakReport report = goodReport();
  EXPECT_THAT(judge(report), IsEmpty());
  const SoakTolerance tolerance;
  report.samples[1].measures.heapBytes += tolerance.heapBytes;
  report.samples[1].measures.residentBytes += tolerance.residentBytes;
  report.samples[1].measures.openFiles += 1;  // a connection more is kept
  EXPECT_THAT(judge(report), IsEmpty());
}

TEST(SoakJudgement, NoticesGrowth) {
  SoakReport report = goodReport();
  const SoakTolerance tolerance;
  report.samples[1].measures.heapBytes += tolerance.heapBytes + 1;
  EXPECT_THAT(judge(report), ElementsAre(HasSubstr("heap")));
  report = goodReport();
  report.samples[1].measures.residentBytes += tolerance.residentBytes + 1;
  EXPECT_THAT(judge(report), ElementsAre(HasSubstr("resident memory")));
}

TEST(SoakJudgement, NoticesFilesAndThreadsWhileItRuns) {
  SoakReport report = goodReport();
  report.samples[1].measures.openFiles += 2;
  report.samples[1].measures.threads += 1;
  EXPECT_THAT(judge(report),
              ElementsAre("more files in hour 2", "another number of threads in hour 2"));
}

TEST(SoakJudgement, NoticesFilesAndThreadsThatStay) {
  SoakReport report = goodReport();
  report.after.openFiles = 1;
  report.after.threads = 1;
  EXPECT_THAT(judge(report), ElementsAre("left files open", "left a thread"));
}

TEST(SoakJudgement, NoticesWakeUpsAndRequestsWithoutNeed) {
  SoakReport report = goodReport();
  ++report.wakeUps;
  EXPECT_THAT(judge(report), ElementsAre("woke 122 times in 120 minutes with 1 alerts"));
  report = goodReport();
  ++report.keyEventRequests;
  EXPECT_THAT(judge(report), ElementsAre(HasSubstr("asked for key events")));
}

}  // namespace
}  // namespace kestrow
