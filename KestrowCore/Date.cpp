#include "KestrowCore/Date.hpp"

#include <cstdint>

namespace kestrow {

namespace {

namespace chrono = std::chrono;

// The first and the last moment that four digits can name the year of.
constexpr Date earliest = chrono::sys_days(chrono::year(0) / 1 / 1);
constexpr Date tooLate = chrono::sys_days(chrono::year(10000) / 1 / 1);

// Takes a date-time apart from its front. Reading beyond the end, or what is not there, makes it
// bad, and it stays so.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool isGood() const { return isGood_; }
  bool isAtEnd() const { return rest_.empty(); }

  bool skipIf(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void skip(char c) { isGood_ = skipIf(c) && isGood_; }

  // A number of exactly so many digits, at most `largest`.
  int number(int digits, int largest) {
    int value = 0;
    for (int count = 0; count < digits; ++count) value = value * 10 + digit();
    isGood_ = isGood_ && value <= largest;
    return value;
  }

  // The digits of a fraction, at least one, in millionths; those beyond are cut off.
  int millionths() {
    int value = 0;
    int unit = 100'000;
    do {
      value += digit() * unit;
      unit /= 10;
    } while (startsWithDigit());
    return value;
  }

 private:
  bool startsWithDigit() const {
    return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
  }

  int digit() {
    if (!startsWithDigit()) {
      isGood_ = false;
      return 0;
    }
    const int value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  bool isGood_ = true;
};

chrono::minutes scanOffset(Scanner& scanner) {
  if (scanner.skipIf('Z')) return chrono::minutes{0};
  const bool isWest = scanner.skipIf('-');
  if (!isWest) scanner.skip('+');
  const chrono::hours hours{scanner.number(2, 23)};
  scanner.skip(':');
  const auto offset = hours + chrono::minutes{scanner.number(2, 59)};
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
  Scanner scanner(text);
  const chrono::year year{scanner.number(4, 9999)};
  scanner.skip('-');
  const auto month = static_cast<unsigned>(scanner.number(2, 12));
  scanner.skip('-');
  const auto day = static_cast<unsigned>(scanner.number(2, 31));
  scanner.skip('T');
  const chrono::hours hours{scanner.number(2, 23)};
  scanner.skip(':');
  const chrono::minutes minutes{scanner.number(2, 59)};
  scanner.skip(':');
  const chrono::seconds seconds{scanner.number(2, 59)};  // system time knows no leap second
  const chrono::microseconds fraction{scanner.skipIf('.') ? scanner.millionths() : 0};
  const auto offset = scanOffset(scanner);
  const chrono::year_month_day days(year, chrono::month(month), chrono::day(day));
  if (!scanner.isGood() || !scanner.isAtEnd() || !days.ok()) return std::nullopt;
  const Date date = chrono::sys_days(days) + hours + minutes + seconds + fraction - offset;
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
