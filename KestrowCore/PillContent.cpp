#include "KestrowCore/PillContent.hpp"

#include "KestrowCore/Text.hpp"

#include <cstddef>
#include <utility>

namespace kestrow {
namespace {

constexpr std::string_view versus = " v ";
constexpr const char* ellipsis = "…";

std::vector<std::string_view> cutAtVersus(std::string_view text) {
  std::vector<std::string_view> pieces;
  for (;;) {
    const std::size_t at = text.find(versus);
    pieces.push_back(text.substr(0, at));
    if (at == std::string_view::npos) return pieces;
    text.remove_prefix(at + versus.size());
  }
}

std::string shortenedTo(std::string_view start) {
  return std::string(trimmingTrailingSpaces(start)) + ellipsis;
}

// A text's start that is long enough to hold every shortening of at most `width`. A text may be
// narrower than its own start, where letters join, but never by this factor; so very long texts are
// not measured at every length.
std::string_view worthMeasuring(std::string_view text, double width,
                                const std::function<double(std::string_view)>& measure) {
  constexpr double joiningAtMost = 2;
  const auto isTooWide = [&](std::string_view start) {
    return measure(shortenedTo(start)) > joiningAtMost * width;
  };
  std::size_t few = 0;
  std::size_t many = 16;
  for (;; few = many, many *= 2) {
    const std::string_view start = text::prefix(text, many);
    if (start.size() == text.size()) return text;
    if (isTooWide(start)) break;
  }
  while (many - few > 1) {
    const std::size_t middle = few + (many - few) / 2;
    (isTooWide(text::prefix(text, middle)) ? many : few) = middle;
  }
  return text::prefix(text, many);
}

}  // namespace

PillContent::PillContent(const PillDisplay& display) {
  switch (display.kind) {
    case PillDisplay::Kind::pickMatch:
      primary = PillDisplay::pickMatchText;
      return;
    case PillDisplay::Kind::loading:
      status = Status::loading;
      primary = PillDisplay::loadingText;
      return;
    case PillDisplay::Kind::unavailable:
      status = Status::unavailable;
      primary = PillDisplay::unavailableText;
      return;
    case PillDisplay::Kind::live:
      status = Status::live;
      break;
    case PillDisplay::Kind::inningsBreak:
      status = Status::inningsBreak;
      break;
    case PillDisplay::Kind::notStarted:
      status = Status::notStarted;
      break;
    case PillDisplay::Kind::finished:
      status = Status::finished;
      break;
  }
  teams = display.teams;
  battingTeam = display.battingTeam;
  primary = display.primary;
  secondary = display.secondary;
  isSample = display.isSample;
  isStale = display.isStale;
}

PillContent PillContent::countdown(const Countdown::Parts& parts, const PillContent& over) {
  PillContent content;
  content.status = Status::countdown;
  content.teams = parts.teams;
  content.primary = parts.duration;
  content.secondary = countdownSecondary;
  content.isStale = over.isStale;
  return content;
}

PillContent PillContent::boom(std::string headline, std::string detail) {
  PillContent content;
  content.status = Status::boom;
  content.primary = std::move(headline);
  content.secondary = std::move(detail);
  return content;
}

std::optional<std::string> PillContent::teamsText() const {
  if (!teams || isMessage() || status == Status::boom) return std::nullopt;
  const std::vector<std::string> sides = split(*teams);
  if (sides.size() != 2) return text::upperCased(*teams);
  return text::upperCased(sides[0]) + std::string(versus) + text::upperCased(sides[1]);
}

std::vector<std::string> PillContent::tags() const {
  std::vector<std::string> out;
  if (isMessage() || status == Status::boom) return out;
  if (isSample) out.emplace_back(sampleTag);
  if (isStale) out.emplace_back(staleTag);
  return out;
}

PillContent::Dot PillContent::dot() const {
  switch (status) {
    case Status::finished:
    case Status::pickMatch:
    case Status::loading:
    case Status::unavailable:
      return Dot::grey;
    case Status::boom:
      return Dot::none;
    case Status::live:
      return isSample || isStale ? Dot::grey : Dot::live;
    case Status::inningsBreak:
    case Status::notStarted:
    case Status::countdown:
      break;
  }
  return isSample || isStale ? Dot::grey : Dot::amber;
}

bool PillContent::isMessage() const {
  return status == Status::pickMatch || status == Status::loading || status == Status::unavailable;
}

std::vector<std::string> PillContent::drawnTexts() const {
  if (isMessage()) return {primary};
  std::vector<std::string> out;
  if (std::optional<std::string> pairing = teamsText()) out.push_back(*std::move(pairing));
  out.push_back(primary);
  if (secondary) out.push_back(*secondary);
  for (std::string& tag : tags()) out.push_back(std::move(tag));
  return out;
}

std::string PillContent::accessibilityLabel() const {
  std::vector<std::string> texts = drawnTexts();
  // The tags, which come last, would be spelt out letter by letter if they were read in capitals.
  for (std::size_t i = texts.size() - tags().size(); i < texts.size(); ++i) {
    texts[i] = text::lowerCased(texts[i]);
  }
  std::string label = texts.front();
  for (std::size_t i = 1; i < texts.size(); ++i) label += ", " + texts[i];
  return label;
}

std::vector<PillContent::TeamRun> PillContent::teamRuns(std::string_view text) const {
  const std::vector<std::string_view> sides = cutAtVersus(text);
  if (sides.size() != 2 || !battingTeam) return {{std::string(text), false}};
  const std::string batting = text::upperCased(*battingTeam);
  return {{std::string(sides[0]), sides[0] == batting},
          {std::string(versus), false},
          {std::string(sides[1]), sides[1] == batting}};
}

std::vector<std::string> PillContent::split(std::string_view teams) {
  std::vector<std::string> sides;
  for (const std::string_view side : cutAtVersus(teams)) {
    sides.emplace_back(text::trimmed(side, text::WhiteSpace::withLineBreaks));
  }
  return sides;
}

std::string PillContent::truncate(std::string_view text, double width,
                                  const std::function<double(std::string_view)>& measure) {
  if (measure(text) <= width) return std::string(text);
  std::string_view rest = worthMeasuring(text, width, measure);
  std::vector<std::string_view> characters = text::characters(rest);
  // The start of a longer text is itself a shortening.
  const bool isWhole = rest.size() == text.size();
  if (isWhole && !characters.empty()) {
    rest.remove_suffix(characters.back().size());
    characters.pop_back();
  }
  while (!characters.empty()) {
    std::string candidate = shortenedTo(rest);
    if (measure(candidate) <= width) return candidate;
    rest.remove_suffix(characters.back().size());
    characters.pop_back();
  }
  return measure(ellipsis) <= width ? ellipsis : std::string();
}

std::string_view trimmingTrailingSpaces(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace kestrow
