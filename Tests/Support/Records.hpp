// Makers of records for tests: only what a test is about needs to be said.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Match.hpp"
#include "KestrowCore/PillContent.hpp"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kestrow::records {

inline Date date(std::int64_t milliseconds) {
  return Date(std::chrono::milliseconds(milliseconds));
}

inline Match match(std::string id, MatchPhase phase = MatchPhase::live) {
  return {.id = std::move(id),
          .league = "League",
          .team1 = {.name = "Mumbai Indians", .shortName = "MI"},
          .team2 = {.name = "Chennai Super Kings", .shortName = "CSK"},
          .state = phase};
}

inline MatchesResponse live(std::vector<Match> matches) {
  return {.live = std::move(matches)};
}

// What the pill shows of a live match.
inline PillContent liveContent(std::string teams = "MI v CSK") {
  PillContent content;
  content.status = PillContent::Status::live;
  content.teams = std::move(teams);
  content.battingTeam = "MI";
  content.primary = "145/3";
  content.secondary = "15.2 ov";
  return content;
}

inline BoomEvent boom(std::int64_t id, BoomKind kind = BoomKind::six) {
  return {.id = id, .kind = kind, .team = "MI", .batter = "R Sharma", .at = date(id % 1000)};
}

inline std::vector<BoomEvent> booms(std::int64_t first, std::int64_t last) {
  std::vector<BoomEvent> events;
  for (auto id = first; id <= last; ++id) events.push_back(boom(id));
  return events;
}

inline std::vector<std::int64_t> ids(const std::vector<BoomEvent>& events) {
  std::vector<std::int64_t> ids;
  ids.reserve(events.size());
  for (const auto& event : events) ids.push_back(event.id);
  return ids;
}

}  // namespace kestrow::records
