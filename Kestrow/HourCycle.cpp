#include "Kestrow/HourCycle.hpp"

#include <string>

namespace kestrow {

namespace {

// The cycle's name as a locale keyword; empty without an hour. Text in quotes is no field.
std::string_view hourCycle(std::string_view pattern) {
  bool isQuoted = false;
  for (const char letter : pattern) {
    if (letter == '\'') isQuoted = !isQuoted;
    if (isQuoted) continue;
    if (letter == 'H') return "h23";
    if (letter == 'h') return "h12";
    if (letter == 'K') return "h11";
    if (letter == 'k') return "h24";
  }
  return {};
}

}  // namespace

Locale withHourCycle(Locale locale, std::string_view pattern) {
  const auto cycle = hourCycle(pattern);
  if (cycle.empty() || locale.id.contains("hours=")) return locale;
  locale.id.append(locale.id.contains('@') ? ";" : "@").append("hours=").append(cycle);
  return locale;
}

}  // namespace kestrow
