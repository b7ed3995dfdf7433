// How matches and the answers that carry them travel as JSON.
#pragma once

#include "KestrowCore/JsonRecord.hpp"
#include "KestrowCore/Match.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace kestrow {

// The answers as the score service sends them. Bytes of a text that are not UTF-8 become U+FFFD.
std::string encode(const MatchesResponse& response);
std::string encode(const MatchResponse& response);

namespace json {

// Overs are refused when their balls can't be counted in 64 bits: nothing that was decoded can
// reach the trap in Innings::balls.
const char* refuseUncountable(const std::optional<double>& overs);

template <>
struct Text<Date> {
  static std::optional<Date> parse(std::string_view text) { return parseInternetDate(text); }
  static std::string refusal(std::string_view text);
  static std::string format(Date date) { return formatInternetDate(date); }
};

// Strict: a phase that this version does not know could be shown as anything but the truth.
template <>
struct Text<MatchPhase> {
  static std::optional<MatchPhase> parse(std::string_view text);
  static std::string refusal(std::string_view text);
  static std::string format(MatchPhase phase);
};

template <>
struct Record<Team> {
  static auto fields(auto& team) {
    return std::tuple(required("name", team.name), required("short", team.shortName));
  }
};

template <>
struct Record<Innings> {
  static auto fields(auto& innings) {
    return std::tuple(required("team", innings.team), required("runs", innings.runs),
                      required("wickets", innings.wickets),
                      optional("overs", innings.overs, refuseUncountable));
  }
};

template <>
struct Record<Match> {
  static auto fields(auto& match) {
    return std::tuple(required("id", match.id), required("league", match.league),
                      required("team1", match.team1), required("team2", match.team2),
                      required("state", match.state), required("status", match.status),
                      optional("startTime", match.startTime), required("innings", match.innings),
                      optional("tournament", match.tournament), optional("teams", match.teams));
  }
};

template <>
struct Record<MatchesResponse> {
  static auto fields(auto& response) {
    return std::tuple(withDefault("sample", response.sample), withDefault("stale", response.stale),
                      optional("updatedAt", response.updatedAt), withDefault("live", response.live),
                      withDefault("upcoming", response.upcoming),
                      withDefault("finished", response.finished));
  }
};

template <>
struct Record<MatchResponse> {
  static auto fields(auto& response) {
    return std::tuple(withDefault("sample", response.sample), withDefault("stale", response.stale),
                      optional("updatedAt", response.updatedAt), optional("match", response.match));
  }
};

}  // namespace json
}  // namespace kestrow
