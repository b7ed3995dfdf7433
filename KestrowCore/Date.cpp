#include "KestrowCore/Date.hpp"

#include <cstdint>

namespace kestrow {

namespace {

namespace chrono = std::chrono;

// The first and the last moment that four digits can name the year of.
constexpr Date earliest = chrono::sys_days(chrono::year(0) / 1 / 1);
constexpr Date tooLate = chrono::sys_days(chrono::year(10000) / 1 / 1);

constexpr std::string_view dateTimeShape = "0000-00-00T00:00:00";
constexpr std::string_view offsetShape = "00:00";  // behind its sign

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Whether the text has a digit for each 0 of the shape, and the shape's other characters as they
// are.
bool hasShape(std::string_view text, std::string_view shape) {
  if (text.size() != shape.size()) return false;
  for (std::size_t at = 0; at < shape.size(); ++at) {
    if (shape[at] == '0' ? !isDigit(text[at]) : text[at] != shape[at]) return false;
  }
  return true;
}

// The number of so many digits at this place.
int number(std::string_view text, std::size_t at, std::size_t digits) {
  int value = 0;
  for (const char c : text.substr(at, digits)) value = value * 10 + (c - '0');
  return value;
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
  const bool isWest = text.starts_with('-');
  if (!isWest && !text.starts_with('+')) return std::nullopt;
  if (!hasShape(text.substr(1), offsetShape)) return std::nullopt;
  const int hours = number(text, 1, 2);
  const int minutes = number(text, 4, 2);
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
  if (!hasShape(text.substr(0, dateTimeShape.size()), dateTimeShape)) return std::nullopt;
  const chrono::year_month_day day{chrono::year(number(text, 0, 4)),
                                   chrono::month(static_cast<unsigned>(number(text, 5, 2))),
                                   chrono::day(static_cast<unsigned>(number(text, 8, 2)))};
  const int hours = number(text, 11, 2);
  const int minutes = number(text, 14, 2);
  const int seconds = number(text, 17, 2);  // below 60: system time knows no leap second
  if (!day.ok() || hours > 23 || minutes > 59 || seconds > 59) return std::nullopt;
  auto rest = text.substr(dateTimeShape.size());
  const auto fraction = takeFraction(rest);
  const auto offset = parseOffset(rest);
  if (!fraction || !offset) return std::nullopt;
  const Date date = chrono::sys_days(day) + chrono::hours{hours} + chrono::minutes{minutes} +
                    chrono::seconds{seconds} + *fraction - *offset;
  if (date < earliest || date >= tooLate) return std::nullopt;
  return date;
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
