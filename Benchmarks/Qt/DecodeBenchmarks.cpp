// Decoding the service's answers with Qt's own JSON, which is what a Qt program would take: parse
// and convert, with our readers for dates and phases, so that the difference is the library's.
#include "Benchmarks/Answers.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <benchmark/benchmark.h>

#include <string>

namespace kestrow {
namespace {

std::string text(const QJsonValue& value) {
  return value.toString().toStdString();
}

std::optional<Date> date(const QJsonValue& value) {
  return value.isString() ? parseInternetDate(text(value)) : std::nullopt;
}

std::optional<std::string> optionalText(const QJsonValue& value) {
  return value.isString() ? std::optional(text(value)) : std::nullopt;
}

template <class T, class Convert>
std::vector<T> list(const QJsonValue& value, Convert convert) {
  std::vector<T> out;
  const auto array = value.toArray();
  out.reserve(static_cast<std::size_t>(array.size()));
  for (const auto& item : array) out.push_back(convert(item));
  return out;
}

Team team(const QJsonValue& value) {
  const auto object = value.toObject();
  return {.name = text(object["name"]), .shortName = text(object["short"])};
}

Innings innings(const QJsonValue& value) {
  const auto object = value.toObject();
  Innings out{.team = text(object["team"]),
              .runs = object["runs"].toInteger(),
              .wickets = object["wickets"].toInteger()};
  if (object["overs"].isDouble()) out.overs = object["overs"].toDouble();
  return out;
}

Match match(const QJsonValue& value) {
  const auto object = value.toObject();
  Match out{.id = text(object["id"]),
            .league = text(object["league"]),
            .team1 = team(object["team1"]),
            .team2 = team(object["team2"]),
            .state = json::Text<MatchPhase>::parse(text(object["state"])).value(),
            .status = text(object["status"]),
            .startTime = date(object["startTime"]),
            .innings = list<Innings>(object["innings"], innings),
            .tournament = optionalText(object["tournament"])};
  if (object.contains("teams")) out.teams = list<std::string>(object["teams"], text);
  return out;
}

MatchesResponse matches(const QJsonObject& object) {
  return {.sample = object["sample"].toBool(),
          .stale = object["stale"].toBool(),
          .updatedAt = date(object["updatedAt"]),
          .live = list<Match>(object["live"], match),
          .upcoming = list<Match>(object["upcoming"], match),
          .finished = list<Match>(object["finished"], match)};
}

BoomEvent boom(const QJsonValue& value) {
  const auto object = value.toObject();
  return {.id = object["id"].toInteger(),
          .kind = json::Text<BoomKind>::parse(text(object["kind"])),
          .team = text(object["team"]),
          .batter = optionalText(object["batter"]),
          .field = optionalText(object["field"]),
          .late = object["late"].toBool(),
          .at = date(object["at"]).value()};
}

ProMatchPayload keyEvents(const QJsonObject& object) {
  return {.match = match(object["match"]),
          .newestEventId = object["newestEventId"].toInteger(),
          .events = list<BoomEvent>(object["events"], boom),
          .keyMoments = list<BoomEvent>(object["keyMoments"], boom)};
}

template <class Convert>
void decode(benchmark::State& state, const std::string& body, Convert convert) {
  for ([[maybe_unused]] const auto turn : state) {
    const auto document = QJsonDocument::fromJson(
        QByteArray::fromRawData(body.data(), static_cast<qsizetype>(body.size())));
    if (!document.isObject()) state.SkipWithError("not parsed");
    auto decoded = convert(document.object());
    benchmark::DoNotOptimize(decoded);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(body.size()));
}

const bool areRegistered = [] {
  for (const std::int64_t count : {10, 100, 1'000, 10'000}) {
    const auto size = '/' + std::to_string(count);
    benchmark::RegisterBenchmark(
        ("Decode/matches/Qt" + size).c_str(),
        [body = answers::listOf(count)](benchmark::State& state) { decode(state, body, matches); });
    benchmark::RegisterBenchmark(("Decode/events/Qt" + size).c_str(),
                                 [body = answers::eventsOf(count)](benchmark::State& state) {
                                   decode(state, body, keyEvents);
                                 });
  }
  return true;
}();

}  // namespace
}  // namespace kestrow
