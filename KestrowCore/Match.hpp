// The score service's records: one match with its teams and innings, and the two answers that carry
// matches. Plain values; how they travel as JSON is in MatchCoding.hpp.
#pragma once

#include "KestrowCore/Date.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {

struct Team {
  std::string name;       // full name
  std::string shortName;  // short code, by which innings refer to the team ("short" in JSON)
  bool operator==(const Team&) const = default;
};

struct Innings {
  std::string team;  // the batting side's short code
  std::int64_t runs = 0;
  std::int64_t wickets = 0;
  // Overs in cricket notation: 12.3 is twelve overs and three balls. Nothing when unknown.
  std::optional<double> overs;

  // Legal balls bowled; nothing when the overs are unknown. Traps when the count does not fit 64
  // bits, which no decoded innings can reach.
  std::optional<std::int64_t> balls() const;

  std::string scoreText() const;                 // "145/3"
  std::optional<std::string> oversText() const;  // "15.2"; nothing when the overs are unknown
  std::string formatted() const;                 // "MI 145/3 (15.2)", or "MI 145/3"

  bool operator==(const Innings&) const = default;
};

// Whether the legal balls in these overs (the whole part is overs, the first decimal digit balls)
// can be counted in 64 bits.
bool areCountable(double overs);

enum class MatchPhase { live, inningsBreak, notStarted, finished };

struct Match {
  std::string id;
  std::string league;
  Team team1;
  Team team2;
  MatchPhase state = MatchPhase::notStarted;
  std::string status;  // the service's own words, for example a result
  std::optional<Date> startTime;
  std::vector<Innings> innings;  // in the order played
  std::optional<std::string> tournament;
  std::optional<std::vector<std::string>> teams;

  // The innings in progress, or the one played last; nothing before the first.
  std::optional<Innings> currentInnings() const;

  bool operator==(const Match&) const = default;
};

// The answer of the list endpoint.
struct MatchesResponse {
  bool sample = false;  // the data are samples
  bool stale = false;   // the service says that its data are out of date
  std::optional<Date> updatedAt;
  std::vector<Match> live;
  std::vector<Match> upcoming;
  std::vector<Match> finished;

  // The first match with exactly this id: live ones first, then upcoming, then finished.
  std::optional<Match> match(std::string_view id) const;

  bool operator==(const MatchesResponse&) const = default;
};

// The answer of the single-match endpoint.
struct MatchResponse {
  bool sample = false;
  bool stale = false;
  std::optional<Date> updatedAt;
  std::optional<Match> match;
  bool operator==(const MatchResponse&) const = default;
};

}  // namespace kestrow
