// Points in time and their internet date-time form (ISO 8601, RFC 3339).
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestrow {

// A point in time, to the microsecond; wide enough for every four-digit year.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

// Tells the time. Passed in wherever "now" matters, so that tests hold the clock.
using Now = std::function<Date()>;

// The system's clock.
Date systemNow();

// Reads "2026-04-12T14:00:00Z", with any number of fraction digits (those beyond microseconds are
// cut off) and with "Z" or an offset such as "+05:30". Years 0000 to 9999. Nothing for anything
// else, impossible dates and times included.
std::optional<Date> parseInternetDate(std::string_view text);

// Writes the date in UTC, ending in "Z", with a fraction only when there is one, so that reading it
// gives the same date back. The date's year must be 0000 to 9999.
std::string formatInternetDate(Date date);

}  // namespace kestrow
