// Match files as the score service reads and plays them.
#include "Fuzzers/Answer.hpp"
#include "Fuzzers/Fuzzer.hpp"
#include "Fuzzers/Shown.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "ScoreService/Cricsheet.hpp"
#include "ScoreService/MatchFeed.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace {

using kestrow::fuzz::require;
namespace service = kestrow::service;

// The service's answers at a moment are answers that the client takes.
void checkAnswers(const service::MatchFeed& feed, kestrow::Date time) {
  const auto list = kestrow::fuzz::decoded<kestrow::MatchesResponse>(encode(feed.matches(time)));
  require(list.has_value(), "the client takes the list");
  kestrow::fuzz::show(*list);
  const auto events = feed.keyEvents("m", std::nullopt, time);
  require(events.has_value(), "the match is known");
  const auto taken = kestrow::fuzz::decoded<kestrow::ProMatchPayload>(encode(*events));
  require(taken && *taken == *events, "the client takes the key events as they are");
  require(std::ranges::is_sorted(taken->events, {}, &kestrow::BoomEvent::id), "ids grow with time");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto played = service::readCricsheet(kestrow::fuzz::textOf(data, size));
  if (!played) {
    require(!played.error().empty() && !played.error().contains('\n'), "an error is one line");
    return 0;
  }
  const kestrow::Date start = *kestrow::parseInternetDate("2026-04-12T14:00:00Z");
  service::MatchScript script(*std::move(played));
  const kestrow::Seconds end = script.end();
  const service::MatchFeed feed({{.id = "m", .script = std::move(script), .start = start}}, {});
  for (const double part : {-0.1, 0.0, 0.3, 0.6, 1.0, 1.1}) {
    checkAnswers(feed, service::laterBy(start, end * part));
  }
  return 0;
}
