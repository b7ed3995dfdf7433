#include "Kestrow/Qt/ClockWatcher.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace kestrow::qt {
namespace {

class ClockWatcherTest : public testing::Test {
 protected:
  ClockWatcherTest() { link("Asia/Kolkata"); }

  QString folder() const { return QString::fromStdString(folder_.path().string()); }
  std::filesystem::path zoneFile() const { return folder_.path() / "localtime"; }

  // As the system's tools do: the link appears in one step.
  void link(const std::string& zone) const {
    const auto fresh = folder_.path() / "localtime.new";
    std::filesystem::create_symlink("/usr/share/zoneinfo/" + zone, fresh);
    std::filesystem::rename(fresh, zoneFile());
  }

  // Watches until the change has been told, or for so long that it would have been.
  static bool hears(const int& changes, int wanted, int milliseconds = 5000) {
    return QTest::qWaitFor([&] { return changes >= wanted; }, milliseconds);
  }

  TemporaryFolder folder_;
};

TEST_F(ClockWatcherTest, TellsOfAnotherTimeZoneEachTimeItChanges) {
  ClockWatcher watcher(folder());
  int changes = 0;
  const auto subscription = watcher.changed.subscribe([&] { ++changes; });
  link("Europe/London");
  EXPECT_TRUE(hears(changes, 1));
  link("Asia/Tokyo");
  EXPECT_TRUE(hears(changes, 2));
  EXPECT_FALSE(hears(changes, 3, 100));
}

TEST_F(ClockWatcherTest, TellsOfZoneRulesThatWereCopiedThere) {
  std::filesystem::remove(zoneFile());
  writeFile(zoneFile(), "rules");
  std::filesystem::last_write_time(
      zoneFile(), std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  ClockWatcher watcher(folder());
  int changes = 0;
  const auto subscription = watcher.changed.subscribe([&] { ++changes; });
  writeFile(folder_.path() / "copy", "others");
  std::filesystem::rename(folder_.path() / "copy", zoneFile());
  EXPECT_TRUE(hears(changes, 1));
}

TEST_F(ClockWatcherTest, IsSilentAboutOtherFilesOfTheFolder) {
  ClockWatcher watcher(folder());
  int changes = 0;
  const auto subscription = watcher.changed.subscribe([&] { ++changes; });
  writeFile(folder_.path() / "motd", "hello");
  link("Asia/Kolkata");
  EXPECT_FALSE(hears(changes, 1, 200));
}

TEST_F(ClockWatcherTest, IsSilentWhereTheSystemHasNoSuchFolder) {
  ClockWatcher watcher(folder() + QStringLiteral("/none"));
  int changes = 0;
  const auto subscription = watcher.changed.subscribe([&] { ++changes; });
  EXPECT_FALSE(hears(changes, 1, 50));
}

// The clock is set to what it says already. That takes the right to set it, and the machine's other
// programs hear of it too, so it is done only where that was allowed.
TEST_F(ClockWatcherTest, TellsThatTheClockWasSetEachTime) {
  if (std::getenv("KESTROW_MAY_SET_CLOCK") == nullptr) {
    GTEST_SKIP() << "KESTROW_MAY_SET_CLOCK is not set";
  }
  ClockWatcher watcher(folder());
  int changes = 0;
  const auto subscription = watcher.changed.subscribe([&] { ++changes; });
  EXPECT_FALSE(hears(changes, 1, 100));
  for (int times = 1; times <= 2; ++times) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    ASSERT_EQ(clock_settime(CLOCK_REALTIME, &now), 0);
    EXPECT_TRUE(hears(changes, times));
  }
}

}  // namespace
}  // namespace kestrow::qt
