#include "ScoreService/Cricsheet.hpp"

#include "KestrowCore/JsonRecord.hpp"
#include "ScoreService/ResultText.hpp"
#include "ScoreService/Teams.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace kestrow::service {
namespace {

// More than any ball has ever brought, with penalties; keeps sums far from overflowing.
constexpr std::int64_t maxRunsOfBall = 50;
constexpr std::int64_t maxOvers = 1000;

struct FileRuns {
  std::int64_t batter = 0;
  std::int64_t total = 0;
  bool isNonBoundary = false;
};

struct FileExtras {
  std::optional<std::int64_t> wides;
  std::optional<std::int64_t> noballs;
};

struct FileWicket {
  std::string playerOut;
  std::string kind;
};

struct FileDelivery {
  std::string batter;
  std::string bowler;
  std::string nonStriker;
  FileRuns runs;
  FileExtras extras;
  std::vector<FileWicket> wickets;
};

struct FileOver {
  std::vector<FileDelivery> deliveries;
};

struct FileTarget {
  std::optional<double> overs;
  std::optional<std::int64_t> runs;
};

struct FilePenalties {
  std::int64_t pre = 0;
  std::int64_t post = 0;
};

struct FileInnings {
  std::string team;
  std::vector<FileOver> overs;
  bool isSuperOver = false;
  FileTarget target;
  FilePenalties penalties;
};

struct FileOutcome {
  std::optional<std::string> winner;
  std::optional<std::string> result;
  std::optional<std::string> method;
  std::optional<std::string> eliminator;
  std::optional<std::string> bowlOut;
  std::map<std::string, std::int64_t> by;
};

struct FileEvent {
  std::optional<std::string> name;
};

struct FileToss {
  std::optional<std::string> winner;
  std::optional<std::string> decision;
};

struct FileInfo {
  std::vector<std::string> teams;
  std::string matchType = "T20";
  std::optional<std::int64_t> overs;
  std::int64_t ballsPerOver = 6;
  FileEvent event;
  FileToss toss;
  FileOutcome outcome;
};

struct FileMatch {
  FileInfo info;
  std::vector<FileInnings> innings;
};

}  // namespace
}  // namespace kestrow::service

namespace kestrow {

template <>
struct json::Record<service::FileRuns> {
  static auto fields(auto& runs) {
    return std::tuple(required("batter", runs.batter), required("total", runs.total),
                      withDefault("non_boundary", runs.isNonBoundary));
  }
};

template <>
struct json::Record<service::FileExtras> {
  static auto fields(auto& extras) {
    return std::tuple(optional("wides", extras.wides), optional("noballs", extras.noballs));
  }
};

template <>
struct json::Record<service::FileWicket> {
  static auto fields(auto& wicket) {
    return std::tuple(required("player_out", wicket.playerOut), required("kind", wicket.kind));
  }
};

template <>
struct json::Record<service::FileDelivery> {
  static auto fields(auto& delivery) {
    return std::tuple(required("batter", delivery.batter), withDefault("bowler", delivery.bowler),
                      withDefault("non_striker", delivery.nonStriker),
                      required("runs", delivery.runs), withDefault("extras", delivery.extras),
                      withDefault("wickets", delivery.wickets));
  }
};

template <>
struct json::Record<service::FileOver> {
  static auto fields(auto& over) { return std::tuple(required("deliveries", over.deliveries)); }
};

template <>
struct json::Record<service::FileTarget> {
  static auto fields(auto& target) {
    return std::tuple(optional("overs", target.overs), optional("runs", target.runs));
  }
};

template <>
struct json::Record<service::FilePenalties> {
  static auto fields(auto& penalties) {
    return std::tuple(withDefault("pre", penalties.pre), withDefault("post", penalties.post));
  }
};

template <>
struct json::Record<service::FileInnings> {
  static auto fields(auto& innings) {
    return std::tuple(required("team", innings.team), withDefault("overs", innings.overs),
                      withDefault("super_over", innings.isSuperOver),
                      withDefault("target", innings.target),
                      withDefault("penalty_runs", innings.penalties));
  }
};

template <>
struct json::Record<service::FileOutcome> {
  static auto fields(auto& outcome) {
    return std::tuple(optional("winner", outcome.winner), optional("result", outcome.result),
                      optional("method", outcome.method),
                      optional("eliminator", outcome.eliminator),
                      optional("bowl_out", outcome.bowlOut), withDefault("by", outcome.by));
  }
};

template <>
struct json::Record<service::FileEvent> {
  static auto fields(auto& event) { return std::tuple(optional("name", event.name)); }
};

template <>
struct json::Record<service::FileToss> {
  static auto fields(auto& toss) {
    return std::tuple(optional("winner", toss.winner), optional("decision", toss.decision));
  }
};

template <>
struct json::Record<service::FileInfo> {
  static auto fields(auto& info) {
    return std::tuple(required("teams", info.teams), withDefault("match_type", info.matchType),
                      optional("overs", info.overs),
                      withDefault("balls_per_over", info.ballsPerOver),
                      withDefault("event", info.event), withDefault("toss", info.toss),
                      withDefault("outcome", info.outcome));
  }
};

template <>
struct json::Record<service::FileMatch> {
  static auto fields(auto& match) {
    return std::tuple(required("info", match.info), required("innings", match.innings));
  }
};

}  // namespace kestrow

namespace kestrow::service {
namespace {

bool counts(const FileWicket& wicket) {
  return wicket.kind != "retired hurt" && wicket.kind != "retired not out";
}

bool isBetween(std::int64_t value, std::int64_t low, std::int64_t high) {
  return value >= low && value <= high;
}

std::string indexed(const std::string& path, std::size_t index) {
  return path + "[" + std::to_string(index) + "]";
}

Ball ballOf(const FileDelivery& delivery) {
  Ball ball;
  ball.batter = delivery.batter;
  ball.partner = delivery.nonStriker;
  ball.bowler = delivery.bowler;
  ball.runs = delivery.runs.total;
  ball.isLegal = !delivery.extras.wides && !delivery.extras.noballs;
  if (!delivery.runs.isNonBoundary && delivery.runs.batter == 4) ball.boundary = BoomKind::four;
  if (!delivery.runs.isNonBoundary && delivery.runs.batter == 6) ball.boundary = BoomKind::six;
  for (const FileWicket& wicket : delivery.wickets) {
    if (counts(wicket)) ball.out.push_back(wicket.playerOut);
  }
  return ball;
}

// The balls of an innings, or what is wrong with them.
std::expected<std::vector<Ball>, std::string> ballsOf(const FileInnings& innings,
                                                      const std::string& path) {
  std::vector<Ball> balls;
  for (std::size_t over = 0; over < innings.overs.size(); ++over) {
    const auto& deliveries = innings.overs[over].deliveries;
    for (std::size_t i = 0; i < deliveries.size(); ++i) {
      const FileRuns& runs = deliveries[i].runs;
      if (!isBetween(runs.total, 0, maxRunsOfBall) || !isBetween(runs.batter, 0, runs.total)) {
        return std::unexpected(indexed(indexed(path + ".overs", over) + ".deliveries", i) +
                               ".runs: not the runs of one ball");
      }
      balls.push_back(ballOf(deliveries[i]));
    }
    if (!balls.empty()) balls.back().endsOver = true;
  }
  return balls;
}

// Legal balls in overs in cricket notation; nothing when no match is that long.
std::optional<std::int64_t> ballsInOvers(double overs, std::int64_t ballsPerOver) {
  if (overs < 0 || overs > static_cast<double>(maxOvers)) return std::nullopt;
  const double whole = std::floor(overs);
  return static_cast<std::int64_t>(whole) * ballsPerOver + std::llround((overs - whole) * 10);
}

// Sets what the side batting second chases, and in how many balls.
void setChase(const FileInfo& info, const FileInnings& file, PlayedMatch& match,
              PlayedInnings& innings) {
  const std::int64_t overs = innings.isSuperOver ? 1 : info.overs.value_or(maxOvers);
  innings.maxBalls = overs * info.ballsPerOver;
  // In a super over the sides bat once each too: the second of a pair chases.
  const bool isChase = info.overs && match.innings.size() % 2 == 1;
  if (!isChase) return;
  innings.target = file.target.runs.value_or(tally(match.innings.back()).runs + 1);
  if (const auto balls = ballsInOvers(file.target.overs.value_or(-1), info.ballsPerOver)) {
    innings.maxBalls = *balls;
  }
}

std::string resultOf(const FileOutcome& outcome) {
  std::string text;
  if (outcome.winner) {
    text = *outcome.winner + " won";
    const auto by = [&](const char* what) {
      const auto found = outcome.by.find(what);
      return found == outcome.by.end() ? std::optional<std::int64_t>() : found->second;
    };
    if (by("innings")) text += " by an innings and";
    if (!by("innings") && (by("runs") || by("wickets"))) text += " by";
    if (const auto runs = by("runs")) text += " " + counted(*runs, "run");
    if (const auto wickets = by("wickets")) text += " " + counted(*wickets, "wicket");
  } else if (outcome.result == "tie") {
    text = "Match tied";
    if (outcome.eliminator) text += " (" + *outcome.eliminator + " won the Super Over)";
    if (outcome.bowlOut) text += " (" + *outcome.bowlOut + " won the bowl-out)";
  } else if (outcome.result == "draw") {
    text = "Match drawn";
  } else {
    text = "No result";
  }
  return outcome.method ? text + " (" + *outcome.method + ")" : text;
}

std::string openingOf(const FileInfo& info) {
  if (!info.toss.winner) return "Live";
  const std::string choice = info.toss.decision.value_or("");
  if (choice != "bat" && choice != "field") return *info.toss.winner + " won the toss";
  return *info.toss.winner + " won the toss and chose to " + choice;
}

std::expected<PlayedMatch, std::string> played(const FileMatch& file) {
  const FileInfo& info = file.info;
  if (info.teams.size() != 2) return std::unexpected("info.teams: not two teams");
  if (!isBetween(info.ballsPerOver, 1, 20)) {
    return std::unexpected("info.balls_per_over: not between 1 and 20");
  }
  if (!isBetween(info.overs.value_or(1), 1, maxOvers)) {
    return std::unexpected("info.overs: not between 1 and 1000");
  }
  PlayedMatch match;
  match.league = info.matchType;
  match.tournament = info.event.name;
  std::tie(match.team1, match.team2) = namedTeams(info.teams[0], info.teams[1]);
  match.openingStatus = openingOf(info);
  match.result = resultOf(info.outcome);
  for (std::size_t i = 0; i < file.innings.size(); ++i) {
    const std::string path = indexed("innings", i);
    const FileInnings& from = file.innings[i];
    if (from.team != info.teams[0] && from.team != info.teams[1]) {
      return std::unexpected(path + ".team: not one of the two teams");
    }
    if (!isBetween(from.penalties.pre, 0, maxRunsOfBall) ||
        !isBetween(from.penalties.post, 0, maxRunsOfBall)) {
      return std::unexpected(path + ".penalty_runs: not between 0 and 50");
    }
    auto balls = ballsOf(from, path);
    if (!balls) return std::unexpected(balls.error());
    PlayedInnings innings{.team = from.team == info.teams[0] ? 0U : 1U,
                          .isSuperOver = from.isSuperOver,
                          .runsBefore = from.penalties.pre,
                          .runsAfter = from.penalties.post,
                          .balls = *std::move(balls)};
    setChase(info, from, match, innings);
    match.innings.push_back(std::move(innings));
  }
  return match;
}

}  // namespace

std::expected<PlayedMatch, std::string> readCricsheet(std::string_view text) {
  const auto file = json::decode<FileMatch>(text);
  if (!file) return std::unexpected(file.error().description());
  return played(*file);
}

}  // namespace kestrow::service
