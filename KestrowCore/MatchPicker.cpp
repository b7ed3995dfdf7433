#include "KestrowCore/MatchPicker.hpp"

#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Text.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace kestrow {

namespace {

// Earliest first, matches without a start time last, else as the service lists them.
std::vector<const Match*> byStartTime(const std::vector<Match>& matches) {
  std::vector<const Match*> ordered;
  ordered.reserve(matches.size());
  for (const auto& match : matches) ordered.push_back(&match);
  std::ranges::stable_sort(ordered, {}, [](const Match* match) {
    return std::pair(!match->startTime.has_value(), match->startTime);
  });
  return ordered;
}

std::string liveDetail(const Match& match, std::string_view status) {
  if (!status.empty()) return std::string(status);
  const auto innings = match.currentInnings();
  return innings ? innings->formatted() : "Live";
}

std::string upcomingDetail(const Match& match, std::string_view status,
                           const FormatStart& formatStart) {
  if (match.startTime) return formatStart(*match.startTime);
  return status.empty() ? "Not started" : std::string(status);
}

}  // namespace

PickerState PickerState::build(const MatchesResponse& response,
                               const std::optional<std::string>& followedId,
                               const FormatStart& formatStart) {
  const auto row = [&](const Match& match, bool isLive) {
    const auto status = text::trimmed(match.status, text::WhiteSpace::spacesAndTabs);
    return PickerRow{
        .id = match.id,
        .teams = match.team1.name + " v " + match.team2.name,
        .competition = match.tournament.value_or(match.league),
        .detail = isLive ? liveDetail(match, status) : upcomingDetail(match, status, formatStart),
        .isLive = isLive,
        .isFollowed = match.id == followedId};
  };
  std::vector<PickerSection> sections;
  const auto addSection = [&](const char* title, const std::vector<Match>& matches, bool isLive) {
    if (matches.empty()) return;
    auto& section = sections.emplace_back(PickerSection{.title = title, .rows = {}});
    std::ranges::transform(byStartTime(matches), std::back_inserter(section.rows),
                           [&](const Match* match) { return row(*match, isLive); });
  };
  addSection("Live", response.live, true);
  addSection("Upcoming", response.upcoming, false);
  if (sections.empty()) return {Empty{.isSample = response.sample}};
  return {Loaded{.sections = std::move(sections), .isSample = response.sample}};
}

MatchPicker::MatchPicker(Fetch fetch, std::optional<std::string> followed, FormatStart formatStart)
    : followedId(std::move(followed)),
      fetch_(std::move(fetch)),
      formatStart_(std::move(formatStart)) {}

MatchPicker::MatchPicker(ScoreClient client, std::optional<std::string> followed)
    : MatchPicker([client = std::move(client)] { return client.matches(); }, std::move(followed),
                  start_time_text::standard) {}

Task<void> MatchPicker::load() {
  set({PickerState::Loading{}});
  auto task = fetch_();
  const auto answer = co_await task;
  set(answer ? PickerState::build(*answer, followedId, formatStart_)
             : PickerState{PickerState::Error{}});
}

void MatchPicker::startLoad() {
  tasks_.start(load());
}

void MatchPicker::set(PickerState state) {
  state_ = std::move(state);
  if (onChange) onChange(state_);
}

}  // namespace kestrow
