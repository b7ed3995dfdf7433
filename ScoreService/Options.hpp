// The service's command line.
#pragma once

#include "KestrowCore/Date.hpp"
#include "ScoreService/Feeds.hpp"
#include "ScoreService/ScoreServer.hpp"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestrow::service {

struct Options {
  ServerSettings server{.port = 8787};
  FeedOptions feed;
  std::vector<std::filesystem::path> replay;  // empty: the simulation
  std::optional<Date> now;                    // where the clock begins; absent: the system's
  bool isFrozen = false;                      // the clock stands still
};

// The program is to end at once: with help asked for (exit code 0, text for the standard output) or
// with a wrong option (another code, one line for the standard error).
struct EarlyExit {
  int code = 0;
  std::string text;
};

// The arguments come without the program's name.
std::expected<Options, EarlyExit> parseOptions(std::vector<std::string> arguments);

// The clock that the options ask for, running from this call on.
Now clockOf(const Options& options);

// The feed that the options ask for, around `origin`. Fails with one line.
std::expected<MatchFeed, std::string> feedOf(const Options& options, Date origin);

}  // namespace kestrow::service
