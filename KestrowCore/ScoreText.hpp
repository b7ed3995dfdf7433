// Wording of scores, results, start times and the wait for the next match.
#pragma once

#include "KestrowCore/Date.hpp"
#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/Match.hpp"
#include "KestrowCore/PillDisplay.hpp"
#include "KestrowCore/Text.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrow {

// A match's two sides by their short names: "MI v CSK".
std::string pairing(const Match& match);

struct ScoreLine {
  std::string team;
  std::int64_t runs = 0;
  std::int64_t wickets = 0;
  std::int64_t balls = 0;  // legal balls bowled

  std::string overs() const;      // "15.2"
  std::string formatted() const;  // "MI 145/3 (15.2)"
  bool operator==(const ScoreLine&) const = default;
};

namespace result_text {

// The longest result that the pill shows, in user-perceived characters.
inline constexpr std::size_t maxLength = 26;

// Shortens a result such as "Mumbai Indians won by 7 wickets (with 3 balls left)" to "MI won by 7
// wkts". A text that had to lose words ends in "…".
std::string shortened(std::string_view status, const Match& match);

}  // namespace result_text

namespace start_time_text {

// "19:30", "Tomorrow 19:30", "Sat 19:30" within the week, else "12 Apr 19:30", as the locale writes
// it. Days are counted in the calendar's time zone.
std::string relative(Date date, Date now, const Calendar& calendar, const Locale& locale);

// The same for the current time, calendar and locale.
std::string standard(Date date);

}  // namespace start_time_text

// The wait for the next match.
struct Countdown {
  struct Parts {
    std::string teams;     // "MI v CSK"
    std::string duration;  // "2d 5h", "7m"
    bool operator==(const Parts&) const = default;
  };

  static std::string duration(Seconds wait);

  // Nothing unless a countdown is due: before the followed match, or half an hour after it
  // finished, when the next fixture's start is known and still to come.
  static std::optional<Parts> parts(const PillDisplay& display, std::optional<Date> finishedAt,
                                    const std::optional<Match>& nextFixture, Date now);

  // "Next: MI v CSK in 5h".
  static std::optional<std::string> text(const PillDisplay& display, std::optional<Date> finishedAt,
                                         const std::optional<Match>& nextFixture, Date now);
};

}  // namespace kestrow
