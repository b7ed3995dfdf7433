#include "KestrowCore/Date.hpp"

#include <cstddef>
#include <cstdint>

namespace kestrow {

namespace {

namespace chrono = std::chrono;

// The first and the last moment that four digits can name the year of.
constexpr Date earliest = chrono::sys_days(chrono::year(0) / 1 / 1);
constexpr Date tooLate = chrono::sys_days(chrono::year(10000) / 1 / 1);

constexpr std::string_view dateTime = "0000-00-00T00:00:00";
constexpr std::string_view offsetTime = "+00:00";

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The number of the two digits at this place; where they are none, one above all of two digits,
// which no month, day, hour, minute or second is.
int twoDigits(std::string_view text, std::size_t at) {
  constexpr int none = 100;
  const int tens = text[at] - '0';
  const int ones = text[at + 1] - '0';
  const int number = tens * 10 + ones;
  return tens >= 0 && tens <= 9 && ones >= 0 && ones <= 9 ? number : none;
}

// The day of a text as long as dateTime; one that is not ok() for what is no date.
chrono::year_month_day dayOf(std::string_view text) {
  const int century = twoDigits(text, 0);
  const int year = twoDigits(text, 2);
  const bool isDate = century < 100 && year < 100 && text[4] == '-' && text[7] == '-';
  return {chrono::year(century * 100 + year),
          chrono::month(isDate ? static_cast<unsigned>(twoDigits(text, 5)) : 0),
          chrono::day(static_cast<unsigned>(twoDigits(text, 8)))};
}

// Takes a fraction, if there is one, from the front of the text; its digits beyond microseconds are
// cut off. Nothing for a point without digits.
std::optional<chrono::microseconds> takeFraction(std::string_view& text) {
  if (!text.starts_with('.')) return chrono::microseconds{0};
  text.remove_prefix(1);
  if (text.empty() || !isDigit(text.front())) return std::nullopt;
  int millionths = 0;
  for (int unit = 100'000; !text.empty() && isDigit(text.front()); unit /= 10) {
    millionths += (text.front() - '0') * unit;
    text.remove_prefix(1);
  }
  return chrono::microseconds{millionths};
}

std::optional<chrono::minutes> parseOffset(std::string_view text) {
  if (text == "Z") return chrono::minutes{0};
  if (text.size() != offsetTime.size() || text[3] != ':') return std::nullopt;
  const bool isWest = text[0] == '-';
  if (!isWest && text[0] != '+') return std::nullopt;
  const int hours = twoDigits(text, 1);
  const int minutes = twoDigits(text, 4);
  if (hours > 23 || minutes > 59) return std::nullopt;
  const auto offset = chrono::hours{hours} + chrono::minutes{minutes};
  return isWest ? -offset : offset;
}

void appendNumber(std::string& out, std::int64_t value, std::size_t digits) {
  const auto text = std::to_string(value);
  out.append(digits - text.size(), '0');
  out += text;
}

}  // namespace

Date systemNow() {
  return chrono::floor<chrono::microseconds>(chrono::system_clock::now());
}

std::optional<Date> parseInternetDate(std::string_view text) {
  if (text.size() < dateTime.size()) return std::nullopt;
  if (text[10] != 'T' || text[13] != ':' || text[16] != ':') return std::nullopt;
  const auto day = dayOf(text);
  const int hours = twoDigits(text, 11);
  const int minutes = twoDigits(text, 14);
  const int seconds = twoDigits(text, 17);  // below 60: system time knows no leap second
  if (!day.ok() || hours > 23 || minutes > 59 || seconds > 59) return std::nullopt;
  auto rest = text.substr(dateTime.size());
  const auto fraction = takeFraction(rest);
  const auto offset = parseOffset(rest);
  if (!fraction || !offset) return std::nullopt;
  const Date date = chrono::sys_days(day) + chrono::hours{hours} + chrono::minutes{minutes} +
                    chrono::seconds{seconds} + *fraction - *offset;
  return earliest <= date && date < tooLate ? std::optional(date) : std::nullopt;
}

std::string formatInternetDate(Date date) {
  const auto days = chrono::floor<chrono::days>(date);
  const chrono::year_month_day calendarDay(days);
  const chrono::hh_mm_ss time(date - days);
  std::string out;
  appendNumber(out, static_cast<int>(calendarDay.year()), 4);
  out += '-';
  appendNumber(out, static_cast<unsigned>(calendarDay.month()), 2);
  out += '-';
  appendNumber(out, static_cast<unsigned>(calendarDay.day()), 2);
  out += 'T';
  appendNumber(out, time.hours().count(), 2);
  out += ':';
  appendNumber(out, time.minutes().count(), 2);
  out += ':';
  appendNumber(out, time.seconds().count(), 2);
  const auto micros = time.subseconds().count();
  if (micros != 0) {
    out += '.';
    const bool areMillis = micros % 1000 == 0;
    appendNumber(out, areMillis ? micros / 1000 : micros, areMillis ? 3 : 6);
  }
  return out += 'Z';
}

}  // namespace kestrow
