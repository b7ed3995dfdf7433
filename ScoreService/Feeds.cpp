#include "ScoreService/Feeds.hpp"

#include "ScoreService/Cricsheet.hpp"
#include "ScoreService/Random.hpp"
#include "ScoreService/Simulation.hpp"
#include "ScoreService/Teams.hpp"

#include <array>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

namespace kestrow::service {
namespace {

using std::chrono::days;
using std::chrono::hours;

// A file longer than this is no match of any length.
constexpr std::uintmax_t maxFileSize = 64U << 20U;

// A match that stands at `point` at the origin.
FeedMatch startedAt(std::string id, PlayedMatch match, const StartPoint& point, double speed,
                    Date origin) {
  FeedMatch made{.id = std::move(id), .script = MatchScript(std::move(match)), .start = origin};
  made.speed = speed;
  made.start = laterBy(origin, -startTime(point, made.script) / speed);
  return made;
}

// Makes the league's matches one after the other.
class League {
 public:
  explicit League(std::uint64_t seed) : seed_(seed), teams_(leagueTeams()) {
    Random random(mixedSeed(seed, 0));
    for (std::size_t i = teams_.size(); i > 1; --i) {
      std::swap(teams_[i - 1], teams_[random.below(i)]);
    }
  }

  void add(const StartPoint& point, double speed, Date origin) {
    matches_.push_back(startedAt(nextId(), nextMatch(), point, speed, origin));
  }

  void addAt(Date start, bool announcesStart) {
    matches_.push_back({.id = nextId(),
                        .script = MatchScript(nextMatch()),
                        .start = start,
                        .announcesStart = announcesStart});
  }

  std::vector<FeedMatch> take() { return std::move(matches_); }

 private:
  std::string nextId() const { return "match-" + std::to_string(matches_.size() + 1); }

  // Each round everyone plays once, against somebody else than in the round before.
  PlayedMatch nextMatch() const {
    const std::size_t count = teams_.size();
    const std::size_t round = matches_.size() / (count / 2);
    const std::size_t pair = matches_.size() % (count / 2);
    const std::size_t shift = round % (count - 1);
    const auto place = [&](std::size_t seat) {
      return seat == 0 ? 0 : 1 + (seat - 1 + shift) % (count - 1);
    };
    return simulateMatch(mixedSeed(seed_, matches_.size() + 1), teams_[place(pair)],
                         teams_[place(count - 1 - pair)]);
  }

  std::uint64_t seed_;
  std::vector<Team> teams_;
  std::vector<FeedMatch> matches_;
};

std::expected<std::string, std::string> readFile(const std::filesystem::path& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) return std::unexpected(error.message());
  if (size > maxFileSize) return std::unexpected("too long for a match file");
  std::ifstream stream(path, std::ios::binary);
  if (!stream) return std::unexpected("can't be opened");
  std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (stream.bad()) return std::unexpected("can't be read");
  return text;
}

}  // namespace

MatchFeed simulatedFeed(std::uint64_t seed, const FeedOptions& options, Date origin) {
  League league(seed);
  league.add(options.start, options.speed, origin);
  league.add({StartPoint::Stage::chase, 45}, 1, origin);
  league.add({StartPoint::Stage::inningsBreak}, 1, origin);

  const Date hour = std::chrono::floor<hours>(origin);
  const Date day = std::chrono::floor<days>(origin);
  league.addAt(hour + hours(6), true);
  static constexpr std::array<int, 7> daysAhead{1, 2, 3, 5, 6, 8, 9};
  for (const int ahead : daysAhead) {
    // Of some matches the hour is not settled yet.
    league.addAt(day + days(ahead) + hours(14), ahead % 3 != 0);
  }
  league.addAt(hour - hours(9), true);
  league.addAt(day - days(1) + hours(10), true);
  return {league.take(), options.flags};
}

std::expected<MatchFeed, std::string> replayFeed(const std::vector<std::filesystem::path>& files,
                                                 const FeedOptions& options, Date origin) {
  std::vector<FeedMatch> matches;
  std::set<std::string> ids;
  for (const auto& file : files) {
    const auto text = readFile(file);
    if (!text) return std::unexpected(file.string() + ": " + text.error());
    auto match = readCricsheet(*text);
    if (!match) return std::unexpected(file.string() + ": " + match.error());
    std::string id = file.stem().string();
    for (int number = 2; !ids.insert(id).second; ++number) {
      id = file.stem().string() + "-" + std::to_string(number);
    }
    matches.push_back(
        startedAt(std::move(id), *std::move(match), options.start, options.speed, origin));
  }
  return MatchFeed(std::move(matches), options.flags);
}

}  // namespace kestrow::service
