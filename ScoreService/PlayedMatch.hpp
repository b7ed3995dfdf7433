// A whole match as it was played, ball by ball, before it is laid out in time. The simulation makes
// one from a seed, the Cricsheet reader one from a file.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Match.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrow::service {

// What goes wrong in reporting a ball's key events. The score itself is always right.
enum class Slip {
  none,
  late,          // reported some balls after it happened
  wrongBatter,   // first reported with the other batter's name, then revised under the same id
  calledFour,    // reported as a four that it was not, then corrected
  calledSix,     // reported as a six that it was not, then corrected
  calledWicket,  // reported as a wicket, then overturned
};

struct Ball {
  std::string batter;
  std::string partner;  // the batter at the other end
  std::string bowler;
  std::int64_t runs = 0;             // extras included
  bool isLegal = true;               // neither a wide nor a no-ball
  bool endsOver = false;             // the next ball, if any, begins another over
  std::optional<BoomKind> boundary;  // four or six off the bat, over the rope
  std::vector<std::string> out;      // who got out; a retirement hurt is not a wicket
  Slip slip = Slip::none;
  std::optional<std::string> milestone;  // the batter who just reached fifty or a hundred
  bool operator==(const Ball&) const = default;
};

struct PlayedInnings {
  std::size_t team = 0;  // who bats: 0 is team1, 1 is team2
  bool isSuperOver = false;
  std::int64_t runsBefore = 0;         // penalty runs given before the first ball
  std::int64_t runsAfter = 0;          // penalty runs given after the last ball
  std::optional<std::int64_t> target;  // runs that win, in a chase
  std::int64_t maxBalls = 120;         // legal balls this innings may last
  std::vector<Ball> balls;
  bool operator==(const PlayedInnings&) const = default;
};

struct PlayedMatch {
  std::string league;
  std::optional<std::string> tournament;
  Team team1;
  Team team2;
  std::string openingStatus;  // said until the chase: who won the toss
  std::string result;         // said from the last ball on
  std::vector<PlayedInnings> innings;
  // Event ids left out at the end of each over, as by a service that numbers other news as well.
  std::int64_t idGapPerOver = 0;
  bool operator==(const PlayedMatch&) const = default;
};

// What an innings came to.
struct Tally {
  std::int64_t runs = 0;
  std::int64_t wickets = 0;
  std::int64_t legalBalls = 0;
  bool operator==(const Tally&) const = default;
};

Tally tally(const PlayedInnings& innings);

// Overs as they travel: 75 balls are 12.3.
double oversFromBalls(std::int64_t legalBalls);

}  // namespace kestrow::service
