// Plays a match file through the service and the pollers, and holds what was shown against what the
// file says.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <vector>

namespace kestrow {

// A file's key events and scores, read by its own short way through the file, not by the service's.
struct FileFacts {
  std::vector<std::string> teams;
  std::vector<std::string> keyEvents;  // "four A Batter", in the order of play
  std::vector<std::string> scores;     // of each innings: "Team 145/3"
  std::string result;
};

std::expected<FileFacts, std::string> factsOf(const std::filesystem::path& file);

struct ReplayReport {
  std::string match;  // the file's name without the extension
  std::size_t expectedFours = 0;
  std::size_t expectedSixes = 0;
  std::size_t expectedWickets = 0;
  std::size_t shownFours = 0;
  std::size_t shownSixes = 0;
  std::size_t shownWickets = 0;
  std::size_t alertsDue = 0;  // after the rule of three of each answer
  std::size_t alertsShown = 0;
  std::size_t logLines = 0;
  std::vector<std::string> expectedScores;
  std::vector<std::string> scores;
  std::string expectedResult;
  std::string result;
  std::vector<std::string> mistakes;  // in words; none when all came out right
};

// Plays the file from before its first ball to after its last, at this speed: the pollers ask once
// in a minute of the clock.
ReplayReport checkReplay(const std::filesystem::path& file, double speed);

}  // namespace kestrow
