// Unicode text and localised dates. The only file family that includes ICU. Text is UTF-8; bytes
// that are not are read as U+FFFD.
#pragma once

#include "KestrowCore/Date.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {

// A locale by its ICU id, such as "en_IN"; may carry keywords ("ar_EG@numbers=latn").
struct Locale {
  std::string id;
  static Locale current();  // the user's
  bool operator==(const Locale&) const = default;
};

// A calendar system by its ICU keyword ("gregorian", "islamic-umalqura") in a time zone
// ("Asia/Kolkata").
struct Calendar {
  std::string system = "gregorian";
  std::string timeZone;
  static Calendar current();  // the user's
  bool operator==(const Calendar&) const = default;
};

namespace text {

// The user-perceived characters (extended grapheme clusters) of a text, as views into it.
std::vector<std::string_view> characters(std::string_view utf8);

// The first `count` user-perceived characters, or all when there are fewer. Costs what the prefix
// costs, however long the text is.
std::string_view prefix(std::string_view utf8, std::size_t count);

// The start of the text that is no longer than so many bytes, cut between code points. For what
// nobody reads to its end: it costs nothing, however long the text is.
std::string_view firstBytes(std::string_view utf8, std::size_t bytes);

// The text, or so many bytes of it at most with "…" behind. Nobody reads further, and handing the
// desktop or assistive technology a text of megabytes would hold up the program. A NUL, which would
// end the text for assistive technology, is a space.
inline constexpr std::size_t longestRead = 4000;
std::string readable(std::string utf8);

// The text for a place that holds one line: line breaks and tabulators, which would end the line or
// tear a hole into it, are spaces.
std::string onOneLine(std::string_view utf8);

// Without white space at both ends. `spacesAndTabs` keeps line breaks.
enum class WhiteSpace { spacesAndTabs, withLineBreaks };
std::string_view trimmed(std::string_view utf8, WhiteSpace which);

// Unicode's full case mapping, independent of language.
std::string upperCased(std::string_view utf8);
std::string lowerCased(std::string_view utf8);

// The text with invalid UTF-8 replaced by U+FFFD.
std::string validated(std::string_view utf8);

// Formats with an ICU skeleton ("jmm", "EEE", "dMMM") as the locale writes it.
std::string formatDate(Date date, std::string_view skeleton, const Calendar& calendar,
                       const Locale& locale);

// Whole days from the start of one date's day to the start of the other's, in the calendar's time
// zone; nothing when they can't be told.
std::optional<std::int64_t> daysBetween(Date from, Date to, const Calendar& calendar);

}  // namespace text
}  // namespace kestrow
