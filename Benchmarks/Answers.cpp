#include "Benchmarks/Answers.hpp"

#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"

#include <chrono>

namespace kestrow::answers {

namespace {

// Not a constant: benchmarks ask for answers while the program's constants are still being made.
Date evening() {
  return *parseInternetDate("2026-04-12T14:00:00Z");
}

Match matchNumber(std::int64_t number) {
  Match match{.id = "ipl-2026-" + std::to_string(number),
              .league = "Indian Premier League",
              .team1 = {.name = "Mumbai Indians", .shortName = "MI"},
              .team2 = {.name = "Royal Challengers Bengaluru", .shortName = "RCB"},
              .state = MatchPhase::live,
              .status = "Royal Challengers Bengaluru need 27 runs in 15 balls",
              .startTime = evening() + std::chrono::hours(number),
              .innings = {{.team = "MI", .runs = 186, .wickets = 6, .overs = 20.0},
                          {.team = "RCB", .runs = 160, .wickets = 4, .overs = 17.3}},
              .tournament = "Indian Premier League 2026"};
  if (number % 3 == 0) match.teams = {{"Mumbai Indians", "Royal Challengers Bengaluru"}};
  return match;
}

}  // namespace

std::string listOf(std::int64_t matches) {
  MatchesResponse response{.updatedAt = evening()};
  for (std::int64_t number = 0; number < matches; ++number) {
    auto* list = number % 4 == 0 ? &response.live : &response.upcoming;
    if (number % 4 == 3) list = &response.finished;
    list->push_back(matchNumber(number));
  }
  return encode(response);
}

std::string eventsOf(std::int64_t events) {
  ProMatchPayload payload{.match = matchNumber(1), .newestEventId = events};
  for (std::int64_t id = 1; id <= events; ++id) {
    payload.keyMoments.push_back({.id = id,
                                  .kind = static_cast<BoomKind>(id % 3),
                                  .team = "Mumbai Indians",
                                  .batter = "Suryakumar Yadav",
                                  .late = false,
                                  .at = evening() + std::chrono::seconds(id * 40)});
  }
  return encode(payload);
}

}  // namespace kestrow::answers
