#include "KestrowCore/ScoreText.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

constexpr std::int64_t ballsPerOver = 6;

std::string oversOf(std::int64_t balls) {
  return std::to_string(balls / ballsPerOver) + "." + std::to_string(balls % ballsPerOver);
}

std::string scoreOf(std::int64_t runs, std::int64_t wickets) {
  return std::to_string(runs) + "/" + std::to_string(wickets);
}

// Where a result turns to its details.
constexpr std::array<std::string_view, 6> detailStarts{" (", ";", ",", " - ", " – ", " — "};

std::string_view withoutDetails(std::string_view status) {
  for (const std::string_view start : detailStarts) {
    const std::size_t at = status.find(start);
    if (at != std::string_view::npos && at > 0) status = status.substr(0, at);
  }
  return status;
}

// For each start of the text, the length of its longest proper start that also ends it.
std::vector<std::size_t> borders(std::string_view text) {
  std::vector<std::size_t> lengths(text.size(), 0);
  for (std::size_t i = 1; i < text.size(); ++i) {
    std::size_t length = lengths[i - 1];
    while (length > 0 && text[i] != text[length]) length = lengths[length - 1];
    lengths[i] = text[i] == text[length] ? length + 1 : 0;
  }
  return lengths;
}

// Every occurrence of `from` replaced. The names come from the service, so the time is linear in
// the lengths even for a name that nearly occurs everywhere (the search by Knuth, Morris and
// Pratt), and names that would blow the text up beyond any use end it there.
std::string replaced(std::string_view text, std::string_view from, std::string_view to) {
  constexpr std::size_t useful = std::size_t{1} << 20U;
  const std::size_t most = std::max(text.size(), useful);
  const std::vector<std::size_t> restarts = borders(from);
  std::string out;
  std::size_t copied = 0;
  std::size_t matched = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    while (matched > 0 && text[i] != from[matched]) matched = restarts[matched - 1];
    if (text[i] == from[matched]) ++matched;
    if (matched < from.size()) continue;
    out.append(text.substr(copied, i + 1 - matched - copied)).append(to);
    if (out.size() > most) return out;
    copied = i + 1;
    matched = 0;
  }
  return out.append(text.substr(copied));
}

std::string withShortName(std::string text, const Team& team) {
  if (team.name.empty() || team.shortName.empty()) return text;
  return replaced(text, team.name, team.shortName);
}

// The characters that a shortened result keeps beside its "…".
constexpr std::size_t room = result_text::maxLength - 1;

struct Word {
  std::string_view text;
  std::size_t length = 0;  // in characters
};

// Takes the next word off the text: as much of it as tells that it has no room. An empty one at the
// end.
Word takeWord(std::string_view& rest) {
  Word word;
  while (!rest.empty() && word.length <= room) {
    const std::string_view character = text::prefix(rest, 1);
    const bool isSpace = character == " ";
    if (isSpace && word.length > 0) break;
    if (!isSpace) {
      const char* start = word.length == 0 ? character.data() : word.text.data();
      word = {std::string_view(start, word.text.size() + character.size()), word.length + 1};
    }
    rest.remove_prefix(character.size());
  }
  return word;
}

std::string firstWords(std::string_view text) {
  std::string words;
  std::size_t length = 0;
  for (Word word = takeWord(text); word.length > 0; word = takeWord(text)) {
    length += word.length + (words.empty() ? 0 : 1);
    if (length > room) {
      if (words.empty()) words = text::prefix(word.text, room);
      break;
    }
    if (!words.empty()) words += ' ';
    words += word.text;
  }
  return words + "…";
}

std::int64_t wholeNumber(double value) {
  constexpr double limit = 0x1p63;
  return value < limit ? static_cast<std::int64_t>(value)
                       : std::numeric_limits<std::int64_t>::max();
}

std::string inHours(std::int64_t hours) {
  constexpr std::int64_t perDay = 24;
  if (hours < perDay) return std::to_string(hours) + "h";
  const std::string days = std::to_string(hours / perDay) + "d";
  return hours % perDay == 0 ? days : days + " " + std::to_string(hours % perDay) + "h";
}

// After a match its result is left standing for a while.
constexpr std::chrono::minutes resultStands{30};

bool isWaiting(const PillDisplay& display, std::optional<Date> finishedAt, Date now) {
  if (display.kind == PillDisplay::Kind::notStarted) return true;
  return display.kind == PillDisplay::Kind::finished && finishedAt &&
         now - *finishedAt >= resultStands;
}

}  // namespace

std::string pairing(const Match& match) {
  return match.team1.shortName + " v " + match.team2.shortName;
}

std::string ScoreLine::overs() const {
  return oversOf(balls);
}

std::string ScoreLine::formatted() const {
  return team + " " + scoreOf(runs, wickets) + " (" + overs() + ")";
}

std::string Innings::scoreText() const {
  return scoreOf(runs, wickets);
}

std::optional<std::string> Innings::oversText() const {
  const std::optional<std::int64_t> bowled = balls();
  if (!bowled) return std::nullopt;
  return oversOf(*bowled);
}

std::string Innings::formatted() const {
  if (const std::optional<std::int64_t> bowled = balls()) {
    return ScoreLine{team, runs, wickets, *bowled}.formatted();
  }
  return team + " " + scoreText();
}

std::string result_text::shortened(std::string_view status, const Match& match) {
  std::string text(withoutDetails(status));
  text = withShortName(std::move(text), match.team1);
  text = withShortName(std::move(text), match.team2);
  text = replaced(text, " wickets", " wkts");
  text = replaced(text, " wicket", " wkt");
  const std::string_view result = text::trimmed(text, text::WhiteSpace::spacesAndTabs);
  if (text::prefix(result, maxLength).size() == result.size()) return std::string(result);
  return firstWords(result);
}

std::string start_time_text::relative(Date date, Date now, const Calendar& calendar,
                                      const Locale& locale) {
  constexpr std::int64_t daysWithWeekday = 6;
  const auto as = [&](std::string_view skeleton) {
    return text::formatDate(date, skeleton, calendar, locale);
  };
  std::string time = as("jmm");
  const std::int64_t days = text::daysBetween(now, date, calendar).value_or(0);
  if (days == 0) return time;
  if (days == 1) return "Tomorrow " + time;
  if (days > 1 && days <= daysWithWeekday) return as("EEE") + " " + time;
  return as("dMMM") + " " + time;
}

std::string start_time_text::standard(Date date) {
  return relative(date, systemNow(), Calendar::current(), Locale::current());
}

std::string Countdown::duration(Seconds wait) {
  using Hours = std::chrono::duration<double, std::ratio<3600>>;
  using Minutes = std::chrono::duration<double, std::ratio<60>>;
  if (wait >= Hours(1)) return inHours(wholeNumber(Hours(wait).count()));
  // What is over already, or no number, is about to start too.
  const double minutes = std::ceil(Minutes(wait).count());
  return std::to_string(minutes > 1 ? wholeNumber(minutes) : 1) + "m";
}

std::optional<Countdown::Parts> Countdown::parts(const PillDisplay& display,
                                                 std::optional<Date> finishedAt,
                                                 const std::optional<Match>& nextFixture,
                                                 Date now) {
  if (display.isSample || !nextFixture || !nextFixture->startTime) return std::nullopt;
  const Date start = *nextFixture->startTime;
  if (start <= now || !isWaiting(display, finishedAt, now)) return std::nullopt;
  return Parts{pairing(*nextFixture), duration(start - now)};
}

std::optional<std::string> Countdown::text(const PillDisplay& display,
                                           std::optional<Date> finishedAt,
                                           const std::optional<Match>& nextFixture, Date now) {
  const std::optional<Parts> wait = parts(display, finishedAt, nextFixture, now);
  if (!wait) return std::nullopt;
  return "Next: " + wait->teams + " in " + wait->duration;
}

}  // namespace kestrow
