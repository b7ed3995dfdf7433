// Decoding the service's answers, beside the least it could cost (simdjson's bare parse into its
// document, nothing read out of it) and what would be written without much thought (nlohmann parse
// and convert). Bytes per second are of the same text.
#include "Benchmarks/Answers.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "KestrowCore/ScoreClient.hpp"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <string>
#include <utility>

namespace kestrow {

namespace {

void setBytes(benchmark::State& state, const std::string& body) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(body.size()));
}

template <class T>
void decodeOurs(benchmark::State& state, const std::string& body) {
  for (auto _ : state) {
    auto decoded = ScoreClient::decode<T>(body);
    if (!decoded) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(decoded);
  }
  setBytes(state, body);
}

// A parser for each document, as a decoder has that keeps nothing between two polls.
void parseBare(benchmark::State& state, const std::string& body) {
  for (auto _ : state) {
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (parser.parse(body).get(root) != simdjson::SUCCESS) state.SkipWithError("not parsed");
    benchmark::DoNotOptimize(root);
  }
  setBytes(state, body);
}

// One parser for all documents: the limit, for those who keep its memory.
void parseBareAgain(benchmark::State& state, const std::string& body) {
  simdjson::dom::parser parser;
  for (auto _ : state) {
    simdjson::dom::element root;
    if (parser.parse(body).get(root) != simdjson::SUCCESS) state.SkipWithError("not parsed");
    benchmark::DoNotOptimize(root);
  }
  setBytes(state, body);
}

}  // namespace

// What nlohmann's library finds by argument-dependent lookup. Dates and phases go through our
// readers, so that the difference is the library's.
static void convert(const nlohmann::json& from, std::optional<Date>& to) {
  to = parseInternetDate(from.get_ref<const std::string&>());
}

template <class T>
static void getOptional(const nlohmann::json& from, const char* key, std::optional<T>& to) {
  const auto found = from.find(key);
  if (found == from.end() || found->is_null()) return;
  if constexpr (std::is_same_v<T, Date>) {
    convert(*found, to);
  } else {
    to = found->get<T>();
  }
}

// NOLINTBEGIN(readability-identifier-naming): the library's names.
void from_json(const nlohmann::json& from, Team& to) {
  from.at("name").get_to(to.name);
  from.at("short").get_to(to.shortName);
}

void from_json(const nlohmann::json& from, Innings& to) {
  from.at("team").get_to(to.team);
  from.at("runs").get_to(to.runs);
  from.at("wickets").get_to(to.wickets);
  getOptional(from, "overs", to.overs);
}

void from_json(const nlohmann::json& from, Match& to) {
  from.at("id").get_to(to.id);
  from.at("league").get_to(to.league);
  from.at("team1").get_to(to.team1);
  from.at("team2").get_to(to.team2);
  to.state = json::Text<MatchPhase>::parse(from.at("state").get_ref<const std::string&>()).value();
  from.at("status").get_to(to.status);
  getOptional(from, "startTime", to.startTime);
  from.at("innings").get_to(to.innings);
  getOptional(from, "tournament", to.tournament);
  getOptional(from, "teams", to.teams);
}

void from_json(const nlohmann::json& from, MatchesResponse& to) {
  to.sample = from.value("sample", false);
  to.stale = from.value("stale", false);
  getOptional(from, "updatedAt", to.updatedAt);
  from.at("live").get_to(to.live);
  from.at("upcoming").get_to(to.upcoming);
  from.at("finished").get_to(to.finished);
}

void from_json(const nlohmann::json& from, BoomEvent& to) {
  from.at("id").get_to(to.id);
  to.kind = json::Text<BoomKind>::parse(from.at("kind").get_ref<const std::string&>());
  from.at("team").get_to(to.team);
  getOptional(from, "batter", to.batter);
  getOptional(from, "field", to.field);
  from.at("late").get_to(to.late);
  to.at = parseInternetDate(from.at("at").get_ref<const std::string&>()).value();
}

void from_json(const nlohmann::json& from, ProMatchPayload& to) {
  from.at("match").get_to(to.match);
  from.at("newestEventId").get_to(to.newestEventId);
  from.at("events").get_to(to.events);
  from.at("keyMoments").get_to(to.keyMoments);
  getOptional(from, "nextFixture", to.nextFixture);
}
// NOLINTEND(readability-identifier-naming)

namespace {

template <class T>
void decodeNlohmann(benchmark::State& state, const std::string& body) {
  for (auto _ : state) {
    auto decoded = nlohmann::json::parse(body).get<T>();
    benchmark::DoNotOptimize(decoded);
  }
  setBytes(state, body);
}

void encodeOurs(benchmark::State& state, const std::string& body) {
  const auto response = *ScoreClient::decode<MatchesResponse>(body);
  for (auto _ : state) {
    auto encoded = encode(response);
    benchmark::DoNotOptimize(encoded);
  }
  setBytes(state, body);
}

const bool areRegistered = [] {
  const auto add = [](const std::string& name, auto function, const std::string& body) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& s) { function(s, body); });
  };
  for (const std::int64_t count : {10, 100, 1'000, 10'000}) {
    const auto size = '/' + std::to_string(count);
    const auto list = answers::listOf(count);
    add("Decode/matches/ours" + size, decodeOurs<MatchesResponse>, list);
    add("Decode/matches/bareParse" + size, parseBare, list);
    add("Decode/matches/bareParseKeptParser" + size, parseBareAgain, list);
    add("Decode/matches/nlohmann" + size, decodeNlohmann<MatchesResponse>, list);
    add("Encode/matches/ours" + size, encodeOurs, list);
    const auto payload = answers::eventsOf(count);
    add("Decode/events/ours" + size, decodeOurs<ProMatchPayload>, payload);
    add("Decode/events/bareParse" + size, parseBare, payload);
    add("Decode/events/bareParseKeptParser" + size, parseBareAgain, payload);
    add("Decode/events/nlohmann" + size, decodeNlohmann<ProMatchPayload>, payload);
  }
  return true;
}();

}  // namespace
}  // namespace kestrow
