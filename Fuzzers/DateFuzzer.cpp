// Internet dates, as text and as moments.
#include "Fuzzers/Fuzzer.hpp"
#include "KestrowCore/Date.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <string>

namespace {

using kestrow::Date;

// The moment that the first bytes name, within the years that a date can have.
Date momentOf(const std::uint8_t* data, std::size_t size) {
  constexpr std::int64_t first = -62'167'219'200'000'000;  // of the year 0
  constexpr std::int64_t last = 253'402'300'799'999'999;   // of the year 9999
  std::array<std::uint8_t, 8> bytes{};
  std::copy_n(data, std::min(size, bytes.size()), bytes.begin());
  const auto offset = std::bit_cast<std::uint64_t>(bytes) % std::uint64_t{last - first + 1};
  return Date(std::chrono::microseconds(first + static_cast<std::int64_t>(offset)));
}

void checkRoundTrip(Date date) {
  const std::string text = kestrow::formatInternetDate(date);
  constexpr std::size_t longest = std::string_view("2026-04-12T14:00:00.123456Z").size();
  kestrow::fuzz::require(text.size() <= longest, "a date's text is short");
  kestrow::fuzz::require(kestrow::parseInternetDate(text) == date, "reading what was written");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto date = kestrow::parseInternetDate(kestrow::fuzz::textOf(data, size));
  if (date) checkRoundTrip(*date);
  checkRoundTrip(momentOf(data, size));
  return 0;
}
