#include "KestrowCore/ScoreText.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;

Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0) {
  return sys_days(std::chrono::year_month_day(std::chrono::year(year), std::chrono::month(month),
                                              std::chrono::day(day))) +
         hours(hour) + minutes(minute);
}

Match match(Team team1 = {"Mumbai Indians", "MI"}, Team team2 = {"Chennai Super Kings", "CSK"}) {
  Match result;
  result.id = "m1";
  result.team1 = std::move(team1);
  result.team2 = std::move(team2);
  return result;
}

std::string shortened(std::string_view status) {
  return result_text::shortened(status, match());
}

TEST(MatchPairing, NamesTheSidesInTheirOrder) {
  EXPECT_EQ(pairing(match()), "MI v CSK");
}

TEST(OversText, CountsBallsInSixes) {
  const auto overs = [](std::int64_t balls) { return ScoreLine{"MI", 0, 0, balls}.overs(); };
  EXPECT_EQ(overs(0), "0.0");
  EXPECT_EQ(overs(5), "0.5");
  EXPECT_EQ(overs(6), "1.0");
  EXPECT_EQ(overs(92), "15.2");
  EXPECT_EQ(overs(120), "20.0");
  EXPECT_EQ(overs(-7), "-1.-1");
  EXPECT_EQ(overs(std::numeric_limits<std::int64_t>::max()), "1537228672809129301.1");
}

TEST(ScoreLines, AreTeamScoreAndOvers) {
  EXPECT_EQ((ScoreLine{"MI", 145, 3, 92}.formatted()), "MI 145/3 (15.2)");
}

TEST(InningsText, NormalisesTheOvers) {
  EXPECT_EQ((Innings{"MI", 145, 3, 12.6}.oversText()), "13.0");
  EXPECT_EQ((Innings{"MI", 145, 3, 19.6}.oversText()), "20.0");
  EXPECT_EQ((Innings{"MI", 145, 3, 0.0}.oversText()), "0.0");
  EXPECT_EQ((Innings{"MI", 145, 3, 15.2}.formatted()), "MI 145/3 (15.2)");
  EXPECT_EQ((Innings{"MI", 145, 3, 15.2}.scoreText()), "145/3");
}

TEST(InningsText, HasNoOversWhenTheyAreUnknown) {
  const Innings innings{"MI", 145, 3, std::nullopt};
  EXPECT_EQ(innings.oversText(), std::nullopt);
  EXPECT_EQ(innings.formatted(), "MI 145/3");
}

TEST(ResultText, ShortensNamesAndWickets) {
  EXPECT_EQ(shortened("Mumbai Indians won by 7 wickets"), "MI won by 7 wkts");
  EXPECT_EQ(shortened("Chennai Super Kings won by 1 wicket"), "CSK won by 1 wkt");
  EXPECT_EQ(shortened("Mumbai Indians beat Chennai Super Kings"), "MI beat CSK");
  EXPECT_EQ(shortened("Mumbai Indians, then"), "MI");
  EXPECT_EQ(shortened("mumbai indians won"), "mumbai indians won");
  EXPECT_EQ(shortened("won by 3 Wickets"), "won by 3 Wickets");
  EXPECT_EQ(shortened("wickets fell"), "wickets fell");
  EXPECT_EQ(shortened("1 wicket 2 wickets 3 wicket"), "1 wkt 2 wkts 3 wkt");
}

TEST(ResultText, ReplacesNamesOneAfterTheOtherAndOnlyWhereBothFormsAreKnown) {
  EXPECT_EQ(result_text::shortened("A beat B", match({"A", "B"}, {"B", "C"})), "C beat C");
  EXPECT_EQ(result_text::shortened("AAA", match({"AA", "x"}, {"", "y"})), "xA");
  EXPECT_EQ(result_text::shortened("aabaabaaab", match({"aabaaab", "x"}, {"", "y"})), "aabx");
  EXPECT_EQ(result_text::shortened("ababac", match({"abac", "x"}, {"", "y"})), "abx");
  EXPECT_EQ(result_text::shortened("A v B", match({"A", "Alphabet"}, {"", ""})), "Alphabet v B");
  EXPECT_EQ(result_text::shortened("A beat B", match({"A", ""}, {"", "C"})), "A beat B");
  EXPECT_EQ(result_text::shortened("A wickets", match({"A", "a"}, {"wickets", "w"})), "a w");
}

TEST(ResultText, FindsEveryNameThatAPlainSearchFinds) {
  std::mt19937 random(3);  // NOLINT(cert-msc51-cpp): the same texts in every run.
  const auto letters = [&](std::size_t length) {
    std::string text;
    while (text.size() < length) text += random() % 2 == 0 ? 'a' : 'b';
    return text;
  };
  for (int round = 0; round < 3000; ++round) {
    const std::string name = letters(1 + random() % 8);
    const std::string status = letters(random() % 26);
    std::string expected;
    for (std::size_t at = 0; at < status.size();) {
      const bool isName = status.compare(at, name.size(), name) == 0;
      expected += isName ? 'x' : status[at];
      at += isName ? name.size() : 1;
    }
    EXPECT_EQ(result_text::shortened(status, match({name, "x"}, {"", ""})), expected)
        << name << " in " << status;
  }
}

TEST(ResultText, LosesItsDetails) {
  EXPECT_EQ(shortened("MI won (DLS method)"), "MI won");
  EXPECT_EQ(shortened("MI won; CSK out"), "MI won");
  EXPECT_EQ(shortened("MI won, at last"), "MI won");
  EXPECT_EQ(shortened("MI won - super over"), "MI won");
  EXPECT_EQ(shortened("MI won – super over"), "MI won");
  EXPECT_EQ(shortened("MI won — super over"), "MI won");
  EXPECT_EQ(shortened("MI won—in-super(over)"), "MI won—in-super(over)");
  EXPECT_EQ(shortened("a, b (c); d"), "a");
  EXPECT_EQ(shortened("a - b - c"), "a");
}

TEST(ResultText, IsNotCutAtItsVeryStart) {
  EXPECT_EQ(shortened(",a,b"), ",a,b");
  EXPECT_EQ(shortened(";a"), ";a");
  EXPECT_EQ(shortened(" (tied) x"), "(tied) x");
  EXPECT_EQ(shortened("x,"), "x");
  EXPECT_EQ(shortened(",a;b"), ",a");
}

TEST(ResultText, IsTrimmedOfSpacesButNotOfLineBreaks) {
  EXPECT_EQ(shortened(" \t\u00a0MI won\u3000 "), "MI won");
  EXPECT_EQ(shortened("\nMI won\n"), "\nMI won\n");
  EXPECT_EQ(shortened(""), "");
  EXPECT_EQ(shortened("   "), "");
}

TEST(ResultText, StaysWholeUpTo26Characters) {
  EXPECT_EQ(shortened("abcde fghij klmno pqrst uv"), "abcde fghij klmno pqrst uv");
  EXPECT_EQ(shortened("abcde fghij klmno pqrst uvw"), "abcde fghij klmno pqrst…");
  EXPECT_EQ(shortened("abcdefghijklmnopqrstuvwxyz"), "abcdefghijklmnopqrstuvwxyz");
}

TEST(ResultText, KeepsAsManyWordsAsLeaveRoomForTheEllipsis) {
  EXPECT_EQ(shortened("abcde fghij klmno pqrst u vw"), "abcde fghij klmno pqrst u…");
  EXPECT_EQ(shortened("abcde fghij klmno pqrst uv w"), "abcde fghij klmno pqrst…");
  // 25 characters and then one more word; 26 lose one.
  EXPECT_EQ(shortened("abcdefghijklmnopqrstuvwxy z"), "abcdefghijklmnopqrstuvwxy…");
  EXPECT_EQ(shortened("a bcdefghijklmnopqrstuvwxyz1"), "a…");
}

TEST(ResultText, CutsASingleLongWord) {
  EXPECT_EQ(shortened(std::string(40, 'x')), std::string(25, 'x') + "…");
  EXPECT_EQ(shortened(std::string(26, 'x') + " y"), std::string(25, 'x') + "…");
}

TEST(ResultText, ClosesUpTheSpacesBetweenWordsOnlyWhenItLosesWords) {
  EXPECT_EQ(shortened("a   b"), "a   b");
  EXPECT_EQ(shortened("a                              b"), "a b…");
  EXPECT_EQ(shortened("aaaaaaaa  bbbbbbbb  cccccccc  d"), "aaaaaaaa bbbbbbbb…");
}

TEST(ResultText, CountsWhatAPersonSees) {
  std::string flags;
  for (int i = 0; i < 26; ++i) flags += "🇮🇳";
  EXPECT_EQ(shortened(flags), flags);
  const std::string first25 = flags.substr(0, flags.size() - std::string("🇮🇳").size());
  EXPECT_EQ(shortened(flags + "🇮🇳"), first25 + "…");
  std::string letters;
  for (int i = 0; i < 13; ++i) letters += "दी ";
  EXPECT_EQ(shortened(letters + "दी"), [] {
    std::string words = "दी";
    for (int i = 0; i < 12; ++i) words += " दी";
    return words + "…";
  }());
}

TEST(ResultText, DoesNotSplitAtASpaceThatCarriesAMark) {
  const std::string joined = "abcdefghijkl \u0301mnopqrstuvwxyz";
  EXPECT_EQ(shortened(joined), "abcdefghijkl \u0301mnopqrstuvwx…");
}

TEST(ResultText, HasAtMost26CharactersWhateverComes) {
  std::mt19937 random(5);  // NOLINT(cert-msc51-cpp): the same texts in every run.
  const std::vector<std::string> pieces = {
      "Mumbai Indians", " won",    " ",    "wickets", " wickets", ", ", " - ", "🇮🇳",
      "हिन्दी",          "e\u0301", "\r\n", " (",      "\u3000",   "\t", "x"};
  for (int round = 0; round < 2000; ++round) {
    std::string status;
    const auto length = random() % 30;
    for (unsigned i = 0; i < length; ++i) status += pieces[random() % pieces.size()];
    const std::string result = shortened(status);
    EXPECT_LE(text::characters(result).size(), result_text::maxLength) << status;
    if (text::characters(status).size() <= 26 || result.ends_with("…")) continue;
    EXPECT_EQ(text::trimmed(result, text::WhiteSpace::spacesAndTabs), result);
  }
}

TEST(ResultText, TakesAHugeStatusAndNamesThatRepeatInIt) {
  const std::string huge(1U << 20U, 'a');
  EXPECT_EQ(shortened(huge), std::string(25, 'a') + "…");
  // A name that nearly occurs everywhere, and one that would multiply the text.
  EXPECT_EQ(result_text::shortened(
                huge, match({std::string(huge.size() / 2, 'a') + "b", "x"}, {"zz", "y"})),
            std::string(25, 'a') + "…");
  EXPECT_EQ(result_text::shortened(huge, match({"a", std::string(1U << 20U, 'b')}, {"b", "cc"})),
            std::string(25, 'c') + "…");
  EXPECT_EQ(shortened("a" + std::string(1U << 20U, ' ') + "b c"), "a b c…");
}

TEST(ResultText, KeepsAllOfALongTextThatItsNamesDoNotLengthen) {
  const std::string spaces(std::size_t{3} << 19U, ' ');
  EXPECT_EQ(result_text::shortened("A" + spaces + "A C", match({"A", "b"}, {"c", "d"})), "b b C…");
}

const Calendar india{"gregorian", "Asia/Kolkata"};
const Locale british{"en_GB"};

// Noon in India, on a Sunday.
const Date noon = utc(2026, 4, 12, 6, 30);

std::string relative(Date date, Date now = noon) {
  return start_time_text::relative(date, now, india, british);
}

TEST(StartTimeText, IsJustTheTimeToday) {
  EXPECT_EQ(relative(noon + hours(7) + minutes(30)), "19:30");
  EXPECT_EQ(relative(noon - hours(12)), "00:00");
  EXPECT_EQ(relative(noon + hours(12) - minutes(1)), "23:59");
}

TEST(StartTimeText, NamesTheDayByItsDistance) {
  EXPECT_EQ(relative(noon + hours(12)), "Tomorrow 00:00");
  EXPECT_EQ(relative(noon + days(1)), "Tomorrow 12:00");
  EXPECT_EQ(relative(noon + days(2)), "Tue 12:00");
  EXPECT_EQ(relative(noon + days(3)), "Wed 12:00");
  EXPECT_EQ(relative(noon + days(6)), "Sat 12:00");
  EXPECT_EQ(relative(noon + days(7)), "19 Apr 12:00");
  EXPECT_EQ(relative(noon + days(9)), "21 Apr 12:00");
  EXPECT_EQ(relative(noon - days(1)), "11 Apr 12:00");
  EXPECT_EQ(relative(noon - days(9)), "3 Apr 12:00");
}

TEST(StartTimeText, CountsDaysInTheCalendarsZone) {
  // 18:30 UTC is midnight in India.
  const Date beforeMidnight = utc(2026, 4, 12, 18, 29);
  EXPECT_EQ(relative(utc(2026, 4, 12, 18, 30), beforeMidnight), "Tomorrow 00:00");
  EXPECT_EQ(start_time_text::relative(utc(2026, 4, 12, 18, 30), beforeMidnight,
                                      {"gregorian", "Europe/London"}, british),
            "19:30");
}

TEST(StartTimeText, CountsDaysAcrossAClockChange) {
  const Calendar london{"gregorian", "Europe/London"};
  const Date eve = utc(2026, 3, 28, 23, 30);
  EXPECT_EQ(start_time_text::relative(utc(2026, 3, 29, 1, 0), eve, london, british),
            "Tomorrow 02:00");
  EXPECT_EQ(start_time_text::relative(utc(2026, 3, 29, 23, 0), eve, london, british), "Mon 00:00");
}

TEST(StartTimeText, IsWrittenAsTheLocaleDoes) {
  const Date later = noon + days(9);
  const auto in = [&](const char* locale) {
    std::string text = start_time_text::relative(later, noon, india, {locale});
    for (std::size_t at = text.find("\u202f"); at != std::string::npos; at = text.find("\u202f")) {
      text.replace(at, 3, " ");
    }
    return text;
  };
  EXPECT_EQ(in("en_US"), "Apr 21 12:00 PM");
  EXPECT_EQ(in("en_IN"), "21 Apr 12:00 pm");
  EXPECT_EQ(in("de_DE"), "21. Apr. 12:00");
  EXPECT_EQ(in("hi_IN"), "21 अप्रैल 12:00 pm");
  EXPECT_EQ(in("ar_EG"), "٢١ أبريل ١٢:٠٠ م");
  EXPECT_EQ(in("ja_JP"), "4月21日 12:00");
}

TEST(StartTimeText, IsJustTheTimeWhereTheDayCannotBeTold) {
  EXPECT_EQ(start_time_text::relative(noon + days(9), noon, {"gregorian", "Mars/Olympus"}, british),
            "06:30");
}

TEST(StartTimeText, IsByDefaultTheUsersNow) {
  const Date now = systemNow();
  EXPECT_EQ(start_time_text::standard(now + days(40)),
            start_time_text::relative(now + days(40), now, Calendar::current(), Locale::current()));
}

TEST(CountdownDuration, IsInMinutesBelowAnHour) {
  EXPECT_EQ(Countdown::duration(Seconds(0)), "1m");
  EXPECT_EQ(Countdown::duration(Seconds(30)), "1m");
  EXPECT_EQ(Countdown::duration(Seconds(59)), "1m");
  EXPECT_EQ(Countdown::duration(Seconds(60)), "1m");
  EXPECT_EQ(Countdown::duration(Seconds(60.5)), "2m");
  EXPECT_EQ(Countdown::duration(Seconds(420)), "7m");
  EXPECT_EQ(Countdown::duration(Seconds(3599)), "60m");
  EXPECT_EQ(Countdown::duration(Seconds(3599.9)), "60m");
  EXPECT_EQ(Countdown::duration(Seconds(-5)), "1m");
}

TEST(CountdownDuration, IsInHoursBelowADay) {
  EXPECT_EQ(Countdown::duration(Seconds(3600)), "1h");
  EXPECT_EQ(Countdown::duration(Seconds(7199)), "1h");
  EXPECT_EQ(Countdown::duration(Seconds(7200)), "2h");
  EXPECT_EQ(Countdown::duration(Seconds(86399)), "23h");
}

TEST(CountdownDuration, IsInDaysAndHoursFromADayOn) {
  EXPECT_EQ(Countdown::duration(Seconds(86400)), "1d");
  EXPECT_EQ(Countdown::duration(Seconds(89999)), "1d");
  EXPECT_EQ(Countdown::duration(Seconds(90000)), "1d 1h");
  // The first number of hours that can't be counted is told as the last that can.
  EXPECT_EQ(Countdown::duration(Seconds(0x1p63 * 3600)), "384307168202282325d 7h");
  EXPECT_EQ(Countdown::duration(Seconds(2 * 86400 + 5 * 3600)), "2d 5h");
}

TEST(CountdownDuration, TakesEveryNumber) {
  const auto infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Countdown::duration(Seconds(1e300)), "384307168202282325d 7h");
  EXPECT_EQ(Countdown::duration(Seconds(infinity)), "384307168202282325d 7h");
  EXPECT_EQ(Countdown::duration(Seconds(-infinity)), "1m");
  EXPECT_EQ(Countdown::duration(Seconds(std::numeric_limits<double>::quiet_NaN())), "1m");
}

PillDisplay display(PillDisplay::Kind kind) {
  PillDisplay result;
  result.kind = kind;
  return result;
}

Match fixture(std::optional<Date> start) {
  Match result = match({"Rajasthan Royals", "RR"}, {"Gujarat Titans", "GT"});
  result.startTime = start;
  return result;
}

TEST(CountdownParts, TellTheWaitBeforeAMatch) {
  using Kind = PillDisplay::Kind;
  EXPECT_EQ(
      Countdown::parts(display(Kind::notStarted), std::nullopt, fixture(noon + hours(5)), noon),
      (Countdown::Parts{"RR v GT", "5h"}));
  EXPECT_EQ(
      Countdown::text(display(Kind::notStarted), std::nullopt, fixture(noon + hours(5)), noon),
      "Next: RR v GT in 5h");
}

TEST(CountdownParts, ComeHalfAnHourAfterTheFinish) {
  const PillDisplay finished = display(PillDisplay::Kind::finished);
  const Match next = fixture(noon + hours(5));
  EXPECT_EQ(Countdown::parts(finished, std::nullopt, next, noon), std::nullopt);
  EXPECT_EQ(Countdown::parts(finished, noon - seconds(1800) + microseconds(1), next, noon),
            std::nullopt);
  EXPECT_EQ(Countdown::parts(finished, noon - seconds(1800), next, noon),
            (Countdown::Parts{"RR v GT", "5h"}));
  EXPECT_EQ(Countdown::text(finished, noon, next, noon), std::nullopt);
}

TEST(CountdownParts, NeedAStartThatIsStillToCome) {
  const PillDisplay before = display(PillDisplay::Kind::notStarted);
  EXPECT_EQ(Countdown::parts(before, std::nullopt, std::nullopt, noon), std::nullopt);
  EXPECT_EQ(Countdown::parts(before, std::nullopt, fixture(std::nullopt), noon), std::nullopt);
  EXPECT_EQ(Countdown::parts(before, std::nullopt, fixture(noon), noon), std::nullopt);
  EXPECT_EQ(Countdown::parts(before, std::nullopt, fixture(noon - hours(1)), noon), std::nullopt);
  EXPECT_EQ(Countdown::parts(before, std::nullopt, fixture(noon + microseconds(1)), noon),
            (Countdown::Parts{"RR v GT", "1m"}));
}

TEST(CountdownParts, DoNotComeForSampleDataOrWhileSomethingElseIsShown) {
  using Kind = PillDisplay::Kind;
  const Match next = fixture(noon + hours(5));
  PillDisplay sample = display(Kind::notStarted);
  sample.isSample = true;
  EXPECT_EQ(Countdown::parts(sample, std::nullopt, next, noon), std::nullopt);
  for (const Kind kind :
       {Kind::pickMatch, Kind::loading, Kind::live, Kind::inningsBreak, Kind::unavailable}) {
    EXPECT_EQ(Countdown::parts(display(kind), noon - hours(2), next, noon), std::nullopt);
  }
}

}  // namespace
}  // namespace kestrow
