// Records at random, for tests of what holds for every record. One seed gives one sequence.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Match.hpp"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {

class RandomRecords {
 public:
  explicit RandomRecords(std::uint64_t seed) : engine_(seed) {}

  std::int64_t integer(std::int64_t least, std::int64_t largest) {
    return std::uniform_int_distribution<std::int64_t>(least, largest)(engine_);
  }

  bool flag() { return integer(0, 1) == 1; }

  // Any 64-bit integer, often one at a limit.
  std::int64_t anyInteger() {
    using Limits = std::numeric_limits<std::int64_t>;
    const auto any = integer(Limits::min(), Limits::max());
    return std::array{any, integer(-9, 300), Limits::min(), Limits::max()}.at(pick(4));
  }

  // Valid UTF-8 of all lengths, with what JSON has to escape.
  std::string text() {
    constexpr std::array<std::string_view, 12> parts{
        "a", "Z", " ", "\"", "\\", "/", "\n", "\x01", "\u00e9", "\u20b9", "\U0001f3cf", "{}"};
    std::string out;
    for (auto count = integer(0, 30); count > 0; --count) out += parts.at(pick(parts.size()));
    if (pick(20) == 0) out += '\0';
    return out;
  }

  // Within the years 0000 to 9999, to the second, millisecond or microsecond.
  Date date() {
    const Date micros(
        std::chrono::microseconds(integer(-62'167'219'200'000'000, 253'402'300'799'999'999)));
    const auto millis = std::chrono::floor<std::chrono::milliseconds>(micros);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(micros);
    return std::array<Date, 3>{micros, millis, seconds}.at(pick(3));
  }

  double overs() {
    const double likely = static_cast<double>(integer(0, 500)) / 10;
    const double any = std::uniform_real_distribution<double>(-1e18, 1e18)(engine_);
    return std::array{likely, any, any * 1e-30}.at(pick(3));
  }

  Team team() { return {.name = text(), .shortName = text()}; }

  Innings innings() {
    return {.team = text(), .runs = anyInteger(), .wickets = anyInteger(), .overs = maybe([&] {
                                                                             return overs();
                                                                           })};
  }

  Match match() {
    return {.id = text(),
            .league = text(),
            .team1 = team(),
            .team2 = team(),
            .state = static_cast<MatchPhase>(integer(0, 3)),
            .status = text(),
            .startTime = maybe([&] { return date(); }),
            .innings = some([&] { return innings(); }),
            .tournament = maybe([&] { return text(); }),
            .teams = maybe([&] { return some([&] { return text(); }); })};
  }

  MatchesResponse matchesResponse() {
    return {.sample = flag(),
            .stale = flag(),
            .updatedAt = maybe([&] { return date(); }),
            .live = some([&] { return match(); }),
            .upcoming = some([&] { return match(); }),
            .finished = some([&] { return match(); })};
  }

  MatchResponse matchResponse() {
    return {.sample = flag(),
            .stale = flag(),
            .updatedAt = maybe([&] { return date(); }),
            .match = maybe([&] { return match(); })};
  }

  BoomEvent boomEvent() {
    return {.id = anyInteger(),
            .kind = static_cast<BoomKind>(integer(0, 4)),
            .team = text(),
            .batter = maybe([&] { return text(); }),
            .field = maybe([&] { return text(); }),
            .late = flag(),
            .at = date()};
  }

  ProMatchPayload payload() {
    return {.match = match(),
            .newestEventId = anyInteger(),
            .events = some([&] { return boomEvent(); }),
            .keyMoments = some([&] { return boomEvent(); }),
            .nextFixture = maybe([&] { return match(); })};
  }

 private:
  std::size_t pick(std::size_t count) {
    return static_cast<std::size_t>(integer(0, static_cast<std::int64_t>(count) - 1));
  }

  template <class Make>
  auto maybe(Make make) -> std::optional<decltype(make())> {
    if (flag()) return make();
    return std::nullopt;
  }

  template <class Make>
  auto some(Make make) -> std::vector<decltype(make())> {
    std::vector<decltype(make())> made;
    for (auto count = integer(0, 4); count > 0; --count) made.push_back(make());
    return made;
  }

  std::mt19937_64 engine_;
};

}  // namespace kestrow
