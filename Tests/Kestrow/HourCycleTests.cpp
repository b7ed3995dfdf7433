#include "Kestrow/HourCycle.hpp"
#include "KestrowCore/Text.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <utility>

namespace kestrow {
namespace {

std::string idWith(std::string id, std::string_view pattern) {
  return withHourCycle({std::move(id)}, pattern).id;
}

TEST(HourCycle, IsReadFromTheLetterOfTheHour) {
  EXPECT_EQ(idWith("en_GB", "HH"), "en_GB@hours=h23");
  EXPECT_EQ(idWith("en_GB", "h a"), "en_GB@hours=h12");
  EXPECT_EQ(idWith("ja_JP", "aK"), "ja_JP@hours=h11");
  EXPECT_EQ(idWith("en_GB", "k"), "en_GB@hours=h24");
}

TEST(HourCycle, StandsBesideOtherKeywords) {
  EXPECT_EQ(idWith("en_US@calendar=buddhist", "HH"), "en_US@calendar=buddhist;hours=h23");
}

TEST(HourCycle, LeavesTheLocalesOwn) {
  EXPECT_EQ(idWith("en_US@hours=h23", "h a"), "en_US@hours=h23");
}

TEST(HourCycle, IsNotGuessedWithoutAnHour) {
  EXPECT_EQ(idWith("en_GB", ""), "en_GB");
  EXPECT_EQ(idWith("en_GB", "a"), "en_GB");
}

TEST(HourCycle, IsNotReadFromWordsInThePattern) {
  EXPECT_EQ(idWith("bg_BG", "HH 'ч'."), "bg_BG@hours=h23");
  EXPECT_EQ(idWith("fr_CA", "'h' HH"), "fr_CA@hours=h23");
  EXPECT_EQ(idWith("fr_CA", "'h'"), "fr_CA");
}

TEST(HourCycle, IsHowTimesAreWritten) {
  const Date evening = std::chrono::sys_days(std::chrono::year(2026) / 4 / 12) +
                       std::chrono::hours(19) + std::chrono::minutes(30);
  const Calendar calendar{.system = "gregorian", .timeZone = "UTC"};
  const auto time = [&](std::string_view pattern) {
    return text::formatDate(evening, "jmm", calendar, withHourCycle({"en_US"}, pattern));
  };
  EXPECT_EQ(time("HH"), "19:30");
  EXPECT_TRUE(time("h a").starts_with("7:30"));
}

}  // namespace
}  // namespace kestrow
