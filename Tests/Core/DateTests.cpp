#include "KestrowCore/Date.hpp"

#include <gtest/gtest.h>

#include <random>

namespace kestrow {
namespace {

using namespace std::chrono_literals;

constexpr Date afternoon =
    std::chrono::sys_days(std::chrono::year(2026) / 4 / 12) + 14h + 5min + 9s;

// A date-time whose day and time have these texts.
std::optional<Date> onDay(const std::string& day) {
  return parseInternetDate(day + "T00:00:00Z");
}
std::optional<Date> atTime(const std::string& time) {
  return parseInternetDate("2026-04-12T" + time);
}

TEST(InternetDate, IsReadWithAndWithoutAFraction) {
  EXPECT_EQ(atTime("14:05:09Z"), afternoon);
  EXPECT_EQ(atTime("14:05:09.123Z"), afternoon + 123ms);
  EXPECT_EQ(atTime("14:05:09.000Z"), afternoon);
}

TEST(InternetDate, TakesAnyNumberOfFractionDigitsAndCutsAtMicroseconds) {
  EXPECT_EQ(atTime("14:05:09.5Z"), afternoon + 500ms);
  EXPECT_EQ(atTime("14:05:09.05Z"), afternoon + 50ms);
  EXPECT_EQ(atTime("14:05:09.123456Z"), afternoon + 123456us);
  EXPECT_EQ(atTime("14:05:09.1234569Z"), afternoon + 123456us);
  EXPECT_EQ(atTime("14:05:09.0000009Z"), afternoon);
  EXPECT_EQ(atTime("14:05:09." + std::string(1000, '9') + "Z"), afternoon + 999999us);
}

TEST(InternetDate, TakesOffsets) {
  EXPECT_EQ(atTime("19:35:09+05:30"), afternoon);
  EXPECT_EQ(atTime("04:05:09-10:00"), afternoon);
  EXPECT_EQ(atTime("14:05:09.25-00:00"), afternoon + 250ms);
  EXPECT_EQ(parseInternetDate("2026-04-13T14:04:09+23:59"), afternoon);
}

TEST(InternetDate, IsNothingInAnyOtherForm) {
  for (const std::string_view text : {"",
                                      "2026-04-12",
                                      "2026-04-12T14:00Z",
                                      "2026-04-12T14:00:00",
                                      "2026-04-12 14:00:00Z",
                                      "2026-04-12t14:00:00Z",
                                      "2026-04-12T14:00:00z",
                                      "2026-04-12T14:00:00.Z",
                                      "2026-04-12T14:00:00.1",
                                      "2026-04-12T14:00:00,1Z",
                                      "2026-04-12T14:00:00+0530",
                                      "2026-04-12T14:00:00+05",
                                      "2026-04-12T14:00:00+5:30",
                                      "2026-04-12T14:00:00 +05:30",
                                      "2026-04-12T14:00:00Z ",
                                      " 2026-04-12T14:00:00Z",
                                      "2026-04-12T14:00:00ZZ",
                                      "2026-04-12T14:00:00Z+05:30",
                                      "2026-04-12T14:00:00+-5:30",
                                      "2026-4-12T14:00:00Z",
                                      "26-04-12T14:00:00Z",
                                      "12026-04-12T14:00:00Z",
                                      "+2026-04-12T14:00:00Z",
                                      "20260412T140000Z",
                                      "2026-04-12T1:00:00Z",
                                      "2026-04-12T14:00:00.-1Z",
                                      "2026/04/12T14:00:00Z",
                                      "2026-04-12T14.00.00Z",
                                      "2026-04/12T14:00:00Z",
                                      "2026-04-12T14:00.00Z",
                                      "x026-04-12T14:00:00Z",
                                      "20x6-04-12T14:00:00Z",
                                      "202x-04-12T14:00:00Z",
                                      "2026-x4-12T14:00:00Z",
                                      "2026-04-1xT14:00:00Z",
                                      "2026-04-12Tx4:00:00Z",
                                      "2026-04-12T14:0x:00Z",
                                      "2026-04-12T14:00:x0Z",
                                      "2026-04-12T14:00:00+x5:30",
                                      "2026-04-12T14:00:00+05:3x",
                                      "now"}) {
    EXPECT_EQ(parseInternetDate(text), std::nullopt) << text;
  }
}

TEST(InternetDate, RefusesImpossibleDays) {
  EXPECT_TRUE(onDay("2024-02-29"));
  EXPECT_TRUE(onDay("2000-02-29"));
  EXPECT_TRUE(onDay("2026-12-31"));
  EXPECT_TRUE(onDay("2026-04-30"));
  for (const auto* day : {"2026-02-29", "2026-02-30", "1900-02-29", "2026-04-31", "2026-00-10",
                          "2026-13-10", "2026-04-00", "2026-01-32"}) {
    EXPECT_FALSE(onDay(day)) << day;
  }
}

TEST(InternetDate, RefusesImpossibleTimes) {
  EXPECT_TRUE(atTime("23:59:59Z"));
  EXPECT_TRUE(atTime("00:00:00Z"));
  for (const auto* time : {"24:00:00Z", "23:60:00Z", "23:59:60Z", "23:59:61Z", "14:00:00+24:00",
                           "14:00:00+05:60", "14:00:00-24:00"}) {
    EXPECT_FALSE(atTime(time)) << time;
  }
}

TEST(InternetDate, HasAYearOfFourDigitsInUtcToo) {
  EXPECT_TRUE(parseInternetDate("0000-01-01T00:00:00Z"));
  EXPECT_TRUE(parseInternetDate("9999-12-31T23:59:59.999999Z"));
  EXPECT_FALSE(parseInternetDate("0000-01-01T00:00:00+00:01"));
  EXPECT_FALSE(parseInternetDate("9999-12-31T23:59:59-00:01"));
}

TEST(InternetDate, IsWrittenInUtcWithAFractionOnlyWhenThereIsOne) {
  EXPECT_EQ(formatInternetDate(afternoon), "2026-04-12T14:05:09Z");
  EXPECT_EQ(formatInternetDate(afternoon + 7ms), "2026-04-12T14:05:09.007Z");
  EXPECT_EQ(formatInternetDate(afternoon + 7us), "2026-04-12T14:05:09.000007Z");
  EXPECT_EQ(formatInternetDate(afternoon + 120'001us), "2026-04-12T14:05:09.120001Z");
  EXPECT_EQ(formatInternetDate(Date{} - 1us), "1969-12-31T23:59:59.999999Z");
  EXPECT_EQ(formatInternetDate(*parseInternetDate("0000-01-01T00:00:00Z")), "0000-01-01T00:00:00Z");
}

TEST(InternetDate, ReadsBackWhatItWrote) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> micros(
      parseInternetDate("0000-01-01T00:00:00Z")->time_since_epoch().count(),
      parseInternetDate("9999-12-31T23:59:59.999999Z")->time_since_epoch().count());
  for (int count = 0; count < 10'000; ++count) {
    const Date date{std::chrono::microseconds{micros(random)}};
    EXPECT_EQ(parseInternetDate(formatInternetDate(date)), date);
    const auto whole = std::chrono::floor<std::chrono::seconds>(date);
    EXPECT_EQ(parseInternetDate(formatInternetDate(whole)), whole);
  }
}

TEST(SystemNow, GoesOn) {
  const auto before = std::chrono::system_clock::now();
  const auto now = systemNow();
  EXPECT_GE(now + 1us, before);
  EXPECT_LE(now, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace kestrow
