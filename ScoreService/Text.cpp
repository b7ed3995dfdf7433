#include "ScoreService/Text.hpp"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace kestrow::service {
namespace {

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

}  // namespace

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  std::int64_t value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> plainNumber(std::string_view text) {
  // Twelve digits on either side hold every length of time and every rate that makes sense here.
  const auto dot = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, dot);
  const std::string_view fraction = dot < text.size() ? text.substr(dot + 1) : "0";
  const auto isNumber = [](std::string_view digits) {
    return !digits.empty() && digits.size() <= 12 && std::ranges::all_of(digits, isDigit);
  };
  if (!isNumber(whole) || !isNumber(fraction)) return std::nullopt;
  double value = 0;
  for (auto digit = fraction.rbegin(); digit != fraction.rend(); ++digit) {
    value = (value + (*digit - '0')) / 10;
  }
  return static_cast<double>(*wholeNumber(whole)) + value;
}

}  // namespace kestrow::service
