#include "KestrowCore/KeyMomentsLog.hpp"

#include "KestrowCore/Text.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace kestrow {

namespace {

std::int64_t idOf(const BoomEvent* event) {
  return event->id;
}

// The batch by rising id; of several events with one id the last counts.
std::vector<const BoomEvent*> latestByRisingId(const std::vector<BoomEvent>& batch) {
  std::vector<const BoomEvent*> latest(batch.size());
  std::ranges::transform(batch.rbegin(), batch.rend(), latest.begin(),
                         [](const BoomEvent& event) { return &event; });
  std::ranges::stable_sort(latest, {}, idOf);
  const auto repeated = std::ranges::unique(latest, {}, idOf);
  latest.erase(repeated.begin(), repeated.end());
  return latest;
}

const char* label(const BoomEvent& event) {
  switch (event.kind) {
    case BoomKind::four:
      return "FOUR";
    case BoomKind::six:
      return "SIX";
    case BoomKind::wicket:
      return "WICKET";
    case BoomKind::other:
      return "Update";
    case BoomKind::correction:
      break;
  }
  if (event.field == "fours") return "Correction: four removed";
  if (event.field == "sixes") return "Correction: six removed";
  if (event.field == "wickets") return "Correction: wicket overturned";
  return "Correction";
}

}  // namespace

void KeyMomentsLog::merge(const std::vector<BoomEvent>& events) {
  std::vector<BoomEvent> added;
  auto place = entries.begin();
  for (const auto* event : latestByRisingId(events)) {
    place = std::ranges::lower_bound(place, entries.end(), event->id, {}, &BoomEvent::id);
    if (place == entries.end() || place->id != event->id) {
      added.push_back(*event);
    } else if (*place != *event) {
      *place = *event;
    }
  }
  const auto kept = std::ssize(entries);
  std::ranges::move(added, std::back_inserter(entries));
  std::ranges::inplace_merge(entries, entries.begin() + kept, {}, &BoomEvent::id);
}

std::vector<std::string> KeyMomentsLog::lines() const {
  std::vector<std::string> lines;
  lines.reserve(entries.size());
  std::ranges::transform(entries, std::back_inserter(lines), key_moment_text::text);
  return lines;
}

std::string key_moment_text::text(const BoomEvent& event) {
  std::string line = label(event);
  if (event.batter) {
    const auto batter =
        kestrow::text::trimmed(*event.batter, kestrow::text::WhiteSpace::withLineBreaks);
    if (!batter.empty()) line.append(" — ").append(batter);
  }
  if (!event.team.empty()) line.append(" (").append(event.team).append(")");
  return line;
}

}  // namespace kestrow
