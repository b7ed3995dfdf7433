#include "KestrowCore/Text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;
using testing::ElementsAre;

Date utc(int y, unsigned month, unsigned day, int hour = 0, int minute = 0) {
  return sys_days(year_month_day(year(y), std::chrono::month(month), std::chrono::day(day))) +
         hours(hour) + minutes(minute);
}

// Which space stands before "PM" changes between versions of the locale data.
std::string plainSpaces(std::string text) {
  for (const std::string special : {"\u202f", "\u00a0"}) {
    for (std::size_t at = text.find(special); at != std::string::npos; at = text.find(special)) {
      text.replace(at, special.size(), " ");
    }
  }
  return text;
}

std::string formatted(Date date, std::string_view skeleton, const std::string& locale,
                      const std::string& zone = "Asia/Kolkata") {
  return plainSpaces(text::formatDate(date, skeleton, {"gregorian", zone}, {locale}));
}

// Sets environment variables for one test.
class Environment {
 public:
  void set(const char* name, const char* value) {
    const char* old = std::getenv(name);
    saved_.emplace_back(name, old == nullptr ? std::nullopt : std::optional<std::string>(old));
    apply(name, value);
  }
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() {
    for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
      apply(it->first.c_str(), it->second ? it->second->c_str() : nullptr);
    }
  }

 private:
  static void apply(const char* name, const char* value) {
    value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
    ::tzset();
  }
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

TEST(TextCharacters, AreOneForEachAsciiLetter) {
  EXPECT_THAT(text::characters("ab c"), ElementsAre("a", "b", " ", "c"));
  EXPECT_TRUE(text::characters("").empty());
  EXPECT_EQ(text::characters("MI v CSK").size(), 8U);
}

TEST(TextCharacters, KeepWhatAPersonSeesAsOneTogether) {
  EXPECT_THAT(text::characters("🇮🇳🇦🇺"), ElementsAre("🇮🇳", "🇦🇺"));
  EXPECT_THAT(text::characters("👨‍👩‍👧a"), ElementsAre("👨‍👩‍👧", "a"));
  EXPECT_THAT(text::characters("हिन्दी"), ElementsAre("हि", "न्दी"));
  EXPECT_THAT(text::characters("e\u0301x"), ElementsAre("e\u0301", "x"));
  EXPECT_THAT(text::characters("தமிழ்"), ElementsAre("த", "மி", "ழ்"));
  EXPECT_THAT(text::characters("👍🏽!"), ElementsAre("👍🏽", "!"));
  EXPECT_EQ(text::characters("🇮🇳🇦🇺 हिन्दी").size(), 5U);
}

TEST(TextCharacters, TakeACarriageReturnAndLineFeedAsOne) {
  EXPECT_THAT(text::characters("a\r\nb"), ElementsAre("a", "\r\n", "b"));
  EXPECT_THAT(text::characters("\r\n"), ElementsAre("\r\n"));
  EXPECT_THAT(text::characters("\n\r"), ElementsAre("\n", "\r"));
}

TEST(TextCharacters, CoverInvalidBytesWithoutLosingAny) {
  const std::string bad = "a\xff\xc3(\xe2\x82";
  std::string joined;
  for (const std::string_view character : text::characters(bad)) joined += character;
  EXPECT_EQ(joined, bad);
}

TEST(TextPrefix, IsTheFirstCharacters) {
  EXPECT_EQ(text::prefix("abcdef", 3), "abc");
  EXPECT_EQ(text::prefix("abc", 3), "abc");
  EXPECT_EQ(text::prefix("abc", 4), "abc");
  EXPECT_EQ(text::prefix("abc", 0), "");
  EXPECT_EQ(text::prefix("", 2), "");
  EXPECT_EQ(text::prefix("🇮🇳🇦🇺🇳🇿", 2), "🇮🇳🇦🇺");
  EXPECT_EQ(text::prefix("🇮🇳🇦🇺🇳🇿", 0), "");
  EXPECT_EQ(text::prefix("🇮🇳🇦🇺🇳🇿", std::string::npos), "🇮🇳🇦🇺🇳🇿");
}

TEST(TextPrefix, KeepsAMarkThatFollowsItsLastLetter) {
  EXPECT_EQ(text::prefix("abe\u0301d", 3), "abe\u0301");
  EXPECT_EQ(text::prefix("a\r\nb", 2), "a\r\n");
}

TEST(TextFirstBytes, AreCutBetweenCodePoints) {
  EXPECT_EQ(text::firstBytes("abc", 3), "abc");
  EXPECT_EQ(text::firstBytes("abc", 4), "abc");
  EXPECT_EQ(text::firstBytes("abc", 2), "ab");
  EXPECT_EQ(text::firstBytes("abc", 0), "");
  EXPECT_EQ(text::firstBytes("a\u00e9b", 1), "a");
  EXPECT_EQ(text::firstBytes("a\u00e9b", 2), "a");
  EXPECT_EQ(text::firstBytes("a\u00e9b", 3), "a\u00e9");
  EXPECT_EQ(text::firstBytes("🏏🏏", 7), "🏏");
  EXPECT_EQ(text::firstBytes("\x80\x80\x80", 2), "");
}

TEST(TextReadable, IsCutBetweenCodePointsWhereNobodyReadsOn) {
  const std::string longest(text::longestRead, 'x');
  EXPECT_EQ(text::readable(longest), longest);
  EXPECT_EQ(text::readable(longest + "x"), longest + "…");
  const std::string almost(text::longestRead - 1, 'x');
  EXPECT_EQ(text::readable(almost + "漢"), almost + "…");
  EXPECT_EQ(text::readable(almost + "\u00E9x"), almost + "…");
}

TEST(TextReadable, IsNotEndedByANul) {
  EXPECT_EQ(text::readable(std::string("\0a\0b", 4)), " a b");
}

TEST(TextOnOneLine, HasASpaceForEachLineBreakAndTabulator) {
  EXPECT_EQ(text::onOneLine("a\tb\nc\vd\fe\rf"), "a b c d e f");
  EXPECT_EQ(text::onOneLine("a\u0085b\u2028c\u2029d"), "a b c d");
  EXPECT_EQ(text::onOneLine("a\r\nb\n\nc\n\rd"), "a b  c  d");
  EXPECT_EQ(text::onOneLine("\na\n"), " a ");
  EXPECT_EQ(text::onOneLine("\n"), " ");
}

TEST(TextOnOneLine, KeepsEverythingElse) {
  EXPECT_EQ(text::onOneLine(""), "");
  EXPECT_EQ(text::onOneLine("MI  v\u00a0CSK\u202f🏏"), "MI  v\u00a0CSK\u202f🏏");
  EXPECT_EQ(text::onOneLine("\b\x0E\x1b"), "\b\x0E\x1b");
  EXPECT_EQ(text::onOneLine("\u0084\u0086\u2027\u202a"), "\u0084\u0086\u2027\u202a");
  EXPECT_EQ(text::onOneLine("\xC2"), "\xC2");
  EXPECT_EQ(text::onOneLine(std::string_view("a\0b", 3)), std::string_view("a\0b", 3));
}

TEST(TextTrimmed, SpacesAndTabsGoAndLineBreaksStay) {
  using enum text::WhiteSpace;
  EXPECT_EQ(text::trimmed(" \t\u00a0\u2003a b\u3000 ", spacesAndTabs), "a b");
  EXPECT_EQ(text::trimmed("\n a \n", spacesAndTabs), "\n a \n");
  EXPECT_EQ(text::trimmed("a\u2028", spacesAndTabs), "a\u2028");
  EXPECT_EQ(text::trimmed(" \t ", spacesAndTabs), "");
  EXPECT_EQ(text::trimmed("", spacesAndTabs), "");
  EXPECT_EQ(text::trimmed("a", spacesAndTabs), "a");
  EXPECT_EQ(text::trimmed(" é", spacesAndTabs), "é");
  EXPECT_EQ(text::trimmed("é ", spacesAndTabs), "é");
}

TEST(TextTrimmed, AllWhiteSpaceGoesWithLineBreaks) {
  using enum text::WhiteSpace;
  EXPECT_EQ(text::trimmed("\r\n\v\f\u0085\u2028\u2029 a\n b\t\n", withLineBreaks), "a\n b");
  EXPECT_EQ(text::trimmed("\n\n", withLineBreaks), "");
  // A zero-width space is no white space.
  EXPECT_EQ(text::trimmed("\u200ba", withLineBreaks), "\u200ba");
}

TEST(TextCase, MapsFullyAndWithoutALanguage) {
  EXPECT_EQ(text::upperCased("Groß v Mi1"), "GROSS V MI1");
  EXPECT_EQ(text::upperCased("ﬁji"), "FIJI");
  EXPECT_EQ(text::upperCased("i"), "I");
  EXPECT_EQ(text::upperCased("élan हि"), "ÉLAN हि");
  EXPECT_EQ(text::upperCased(""), "");
  EXPECT_EQ(text::lowerCased("SAMPLE É"), "sample é");
  EXPECT_EQ(text::lowerCased("I"), "i");
  EXPECT_EQ(text::lowerCased("ΟΔΟΣ"), "οδος");
}

TEST(TextCase, ReplacesInvalidBytes) {
  EXPECT_EQ(text::upperCased("a\xff"), "A\ufffd");
  EXPECT_EQ(text::lowerCased("A\xff"), "a\ufffd");
}

TEST(TextValidated, ReplacesOnlyWhatIsInvalid) {
  EXPECT_EQ(text::validated("MI v CSK · 145/3 🇮🇳"), "MI v CSK · 145/3 🇮🇳");
  EXPECT_EQ(text::validated("a\xff"
                            "b"),
            "a\ufffdb");
  EXPECT_EQ(text::validated("\xe2\x82"), "\ufffd");
  EXPECT_EQ(text::validated(std::string("a\0b", 3)), std::string("a\0b", 3));
}

// 19:30 on Sunday, 12 April 2026, in India.
const Date evening = utc(2026, 4, 12, 14, 0);

TEST(FormatDate, WritesTheTimeAsTheLocaleDoes) {
  EXPECT_EQ(formatted(evening, "jmm", "en_US"), "7:30 PM");
  EXPECT_EQ(formatted(evening, "jmm", "en_GB"), "19:30");
  EXPECT_EQ(formatted(evening, "jmm", "en_IN"), "7:30 pm");
  EXPECT_EQ(formatted(evening, "jmm", "de_DE"), "19:30");
  EXPECT_EQ(formatted(evening, "jmm", "hi_IN"), "7:30 pm");
  EXPECT_EQ(formatted(evening, "jmm", "ar_EG"), "٧:٣٠ م");
  EXPECT_EQ(formatted(evening, "jmm", "ja_JP"), "19:30");
}

TEST(FormatDate, WritesDayAndMonthInTheLocalesOrderAndWords) {
  EXPECT_EQ(formatted(evening, "dMMM", "en_US"), "Apr 12");
  EXPECT_EQ(formatted(evening, "dMMM", "en_GB"), "12 Apr");
  EXPECT_EQ(formatted(evening, "dMMM", "en_IN"), "12 Apr");
  EXPECT_EQ(formatted(evening, "dMMM", "de_DE"), "12. Apr.");
  EXPECT_EQ(formatted(evening, "dMMM", "hi_IN"), "12 अप्रैल");
  EXPECT_EQ(formatted(evening, "dMMM", "ar_EG"), "١٢ أبريل");
  EXPECT_EQ(formatted(evening, "dMMM", "ja_JP"), "4月12日");
}

TEST(FormatDate, WritesTheShortWeekday) {
  EXPECT_EQ(formatted(evening, "EEE", "en_US"), "Sun");
  EXPECT_EQ(formatted(evening, "EEE", "de_DE"), "So");
  EXPECT_EQ(formatted(evening, "EEE", "hi_IN"), "रवि");
  EXPECT_EQ(formatted(evening, "EEE", "ar_EG"), "الأحد");
  EXPECT_EQ(formatted(evening, "EEE", "ja_JP"), "日");
}

TEST(FormatDate, HonoursTheHoursAndDigitsThatALocaleAsksFor) {
  EXPECT_EQ(formatted(evening, "jmm", "en_US@hours=h23"), "19:30");
  EXPECT_EQ(formatted(evening, "jmm", "ar_EG@numbers=latn"), "7:30 م");
}

TEST(FormatDate, UsesTheCalendarsZone) {
  EXPECT_EQ(formatted(evening, "jmm", "en_GB", "Europe/London"), "15:00");
  EXPECT_EQ(formatted(evening, "jmm", "en_GB", "America/New_York"), "10:00");
  EXPECT_EQ(formatted(evening, "dMMM", "en_GB", "Pacific/Auckland"), "13 Apr");
  EXPECT_EQ(formatted(evening, "jmm", "en_GB", "GMT+05:45"), "19:45");
}

TEST(FormatDate, FollowsADaylightSavingChangeWithinTheDay) {
  // British clocks go from 01:00 to 02:00 on 29 March 2026.
  EXPECT_EQ(formatted(utc(2026, 3, 29, 0, 59), "jmm", "en_GB", "Europe/London"), "00:59");
  EXPECT_EQ(formatted(utc(2026, 3, 29, 1, 0), "jmm", "en_GB", "Europe/London"), "02:00");
}

TEST(FormatDate, CountsDaysInTheCalendarSystem) {
  EXPECT_EQ(text::formatDate(evening, "dMMM", {"buddhist", "Asia/Bangkok"}, {"en_GB"}), "12 Apr");
  EXPECT_EQ(text::formatDate(evening, "dMMM", {"persian", "Asia/Tehran"}, {"en_GB"}),
            "23 Farvardin");
  EXPECT_EQ(
      text::formatDate(evening, "dMMM", {"gregorian", "Asia/Tehran"}, {"en_GB@calendar=persian"}),
      "12 Apr");
}

TEST(FormatDate, ReadsAnUnknownZoneAsUtc) {
  EXPECT_EQ(formatted(evening, "jmm", "en_GB", "Mars/Olympus"), "14:00");
  EXPECT_EQ(formatted(evening, "jmm", "en_GB", ""), "14:00");
}

TEST(FormatDate, GivesSomethingForUnknownNames) {
  EXPECT_FALSE(formatted(evening, "jmm", "xx_YY").empty());
  EXPECT_FALSE(formatted(evening, "jmm", "").empty());
  EXPECT_FALSE(formatted(evening, "jmm", "!!! not a locale @@ \xff").empty());
  EXPECT_EQ(text::formatDate(evening, "dMMM", {"no such calendar", "Asia/Kolkata"}, {"en_GB"}),
            "12 Apr");
}

TEST(FormatDate, ReachesTheEndsOfTime) {
  EXPECT_EQ(formatted(utc(9999, 12, 31, 23, 59), "jmm", "en_GB", "UTC"), "23:59");
  EXPECT_EQ(formatted(utc(9999, 12, 31, 23, 59), "dMMM", "en_GB", "UTC"), "31 Dec");
  EXPECT_EQ(formatted(utc(0, 1, 1), "jmm", "en_GB", "UTC"), "00:00");
  EXPECT_FALSE(formatted(Date::min(), "dMMM", "en_GB").empty());
  EXPECT_FALSE(formatted(Date::max(), "dMMM", "ar_EG").empty());
}

std::optional<std::int64_t> days(Date from, Date to, const std::string& zone) {
  return text::daysBetween(from, to, {"gregorian", zone});
}

TEST(DaysBetween, CountsMidnightsInTheZone) {
  EXPECT_EQ(days(utc(2026, 4, 12, 0, 0), utc(2026, 4, 12, 23, 59), "UTC"), 0);
  EXPECT_EQ(days(utc(2026, 4, 12, 23, 59), utc(2026, 4, 13, 0, 0), "UTC"), 1);
  EXPECT_EQ(days(utc(2026, 4, 13, 0, 0), utc(2026, 4, 12, 23, 59), "UTC"), -1);
  // Midnight in India is 18:30 UTC.
  EXPECT_EQ(days(utc(2026, 4, 12, 18, 29), utc(2026, 4, 12, 18, 30), "Asia/Kolkata"), 1);
  EXPECT_EQ(days(utc(2026, 4, 12, 18, 30), utc(2026, 4, 13, 18, 29), "Asia/Kolkata"), 0);
  EXPECT_EQ(days(utc(2026, 1, 1), utc(2027, 1, 1), "UTC"), 365);
}

TEST(DaysBetween, CountsShortAndLongDaysAsDays) {
  // 23 hours long: 29 March 2026 in London; 25 hours long: 25 October 2026.
  EXPECT_EQ(days(utc(2026, 3, 29, 0, 0), utc(2026, 3, 29, 22, 59), "Europe/London"), 0);
  EXPECT_EQ(days(utc(2026, 3, 29, 0, 0), utc(2026, 3, 29, 23, 0), "Europe/London"), 1);
  EXPECT_EQ(days(utc(2026, 10, 24, 23, 0), utc(2026, 10, 25, 23, 59), "Europe/London"), 0);
  EXPECT_EQ(days(utc(2026, 10, 24, 23, 0), utc(2026, 10, 26, 0, 0), "Europe/London"), 1);
}

TEST(DaysBetween, CountsADayWhoseMidnightDoesNotExist) {
  // Clocks in Beirut go from 00:00 to 01:00 on 29 March 2026.
  EXPECT_EQ(days(utc(2026, 3, 28, 12, 0), utc(2026, 3, 29, 12, 0), "Asia/Beirut"), 1);
  EXPECT_EQ(days(utc(2026, 3, 29, 12, 0), utc(2026, 3, 30, 12, 0), "Asia/Beirut"), 1);
}

TEST(DaysBetween, ReachesFarAndTellsNothingInAnUnknownZone) {
  EXPECT_EQ(days(utc(1970, 1, 1), utc(9999, 12, 31), "UTC"), 2932896);
  EXPECT_EQ(days(utc(2026, 1, 1), utc(2026, 1, 2), "Mars/Olympus"), std::nullopt);
  EXPECT_EQ(days(utc(2026, 1, 1), utc(2026, 1, 2), ""), std::nullopt);
  days(Date::min(), Date::max(), "UTC");
}

TEST(CurrentLocale, FollowsTheSettingForDates) {
  Environment environment;
  environment.set("LC_ALL", nullptr);
  environment.set("LC_TIME", "de_DE.UTF-8");
  environment.set("LANG", "en_US.UTF-8");
  EXPECT_EQ(Locale::current().id, "de_DE");
  environment.set("LC_ALL", "hi_IN");
  EXPECT_EQ(Locale::current().id, "hi_IN");
  environment.set("LC_ALL", "");
  environment.set("LC_TIME", "");
  EXPECT_EQ(Locale::current().id, "en_US");
}

TEST(CurrentLocale, ReadsModifiersAsTheCLibraryWritesThem) {
  Environment environment;
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
      {"uz_UZ@cyrillic", "uz_Cyrl_UZ"},
      {"ks_IN@devanagari", "ks_Deva_IN"},
      {"de_DE@euro", "de_DE"},
      {"en_IN.ISO-8859-1", "en_IN"},
      {"ja", "ja"},
      {"sr@latin", "sr_Latn"},
  };
  for (const auto& [setting, id] : cases) {
    environment.set("LC_ALL", setting);
    EXPECT_EQ(Locale::current().id, id) << setting;
  }
}

TEST(CurrentLocale, HasA24HourClockAndEnglishWordsWithoutASetting) {
  Environment environment;
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) environment.set(name, nullptr);
  const Locale none = Locale::current();
  EXPECT_EQ(formatted(evening, "jmm", none.id), "19:30");
  EXPECT_EQ(formatted(evening, "dMMM", none.id), "Apr 12");
  EXPECT_EQ(formatted(evening, "EEE", none.id), "Sun");
  for (const char* plain : {"C", "POSIX", "C.UTF-8"}) {
    environment.set("LANG", plain);
    EXPECT_EQ(Locale::current(), none) << plain;
  }
}

TEST(CurrentCalendar, IsTheLocalesInTheHostsZone) {
  Environment environment;
  environment.set("LC_ALL", "en_IN.UTF-8");
  environment.set("TZ", "Asia/Kolkata");
  EXPECT_EQ(Calendar::current(), (Calendar{"gregorian", "Asia/Kolkata"}));
  environment.set("LC_ALL", "fa_IR.UTF-8");
  EXPECT_EQ(Calendar::current().system, "persian");
}

TEST(CurrentCalendar, NoticesANewTimeZone) {
  Environment environment;
  environment.set("TZ", "Asia/Kolkata");
  EXPECT_EQ(Calendar::current().timeZone, "Asia/Kolkata");
  environment.set("TZ", ":Europe/London");
  EXPECT_EQ(Calendar::current().timeZone, "Europe/London");
}

TEST(CurrentCalendar, TakesTheOffsetOfAZoneThatHasNoName) {
  Environment environment;
  environment.set("TZ", "XYZ-5:45");
  EXPECT_EQ(Calendar::current().timeZone, "GMT+05:45");
  environment.set("TZ", "XYZ3:30");
  EXPECT_EQ(Calendar::current().timeZone, "GMT-03:30");
  environment.set("TZ", "nonsense");
  const Calendar calendar = Calendar::current();
  EXPECT_EQ(calendar.timeZone, "GMT+00:00");
  EXPECT_EQ(text::daysBetween(evening, evening + hours(24), calendar), 1);
}

}  // namespace
}  // namespace kestrow
