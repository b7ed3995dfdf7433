// The feeds that the service plays: a simulated league, or match files.
#pragma once

#include "KestrowCore/Date.hpp"
#include "ScoreService/MatchFeed.hpp"
#include "ScoreService/StartPoint.hpp"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <string>
#include <vector>

namespace kestrow::service {

struct FeedOptions {
  FeedFlags flags;
  StartPoint start;
  double speed = 1;  // seconds of the match in one second of the clock; more than zero
};

// The id of the match that speed and start point are about: the first that a league makes.
inline constexpr const char* featuredMatchId = "match-1";

// A league around `origin`: the featured match, a second live one, one in an innings break, those
// of the next ten days, and finished ones. All but the featured one keep the clock's pace. The ids
// are the same for every seed.
MatchFeed simulatedFeed(std::uint64_t seed, const FeedOptions& options, Date origin);

// Match files, each played live from `origin` on. A match's id is its file's name without the
// extension, with a number added where files share a name. Fails with one line that names the file.
std::expected<MatchFeed, std::string> replayFeed(const std::vector<std::filesystem::path>& files,
                                                 const FeedOptions& options, Date origin);

}  // namespace kestrow::service
