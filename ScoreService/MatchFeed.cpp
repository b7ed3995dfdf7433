#include "ScoreService/MatchFeed.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kestrow::service {
namespace {

Seconds elapsed(const FeedMatch& match, Date now) {
  return std::chrono::duration_cast<Seconds>(now - match.start) * match.speed;
}

Match record(const FeedMatch& match, Date now) {
  const PlayedMatch& played = match.script.match();
  MatchStand stand = match.script.standAt(elapsed(match, now));
  Match made;
  made.id = match.id;
  made.league = played.league;
  made.team1 = played.team1;
  made.team2 = played.team2;
  made.state = stand.phase;
  made.status = std::move(stand.status);
  if (match.announcesStart) made.startTime = toMilliseconds(match.start);
  made.innings = std::move(stand.innings);
  made.tournament = played.tournament;
  made.teams = {{played.team1.name, played.team2.name}};
  return made;
}

BoomEvent eventAt(const FeedMatch& match, const ScriptedEvent& scripted, Seconds time) {
  BoomEvent event = scripted.event;
  if (scripted.revisedBatter && time >= scripted.revised) event.batter = scripted.revisedBatter;
  event.at = toMilliseconds(laterBy(match.start, scripted.happened / match.speed));
  return event;
}

}  // namespace

Date toMilliseconds(Date date) {
  return std::chrono::floor<std::chrono::milliseconds>(date);
}

Date laterBy(Date date, Seconds seconds) {
  return date + std::chrono::duration_cast<Date::duration>(seconds);
}

MatchFeed::MatchFeed(std::vector<FeedMatch> matches, FeedFlags flags)
    : matches_(std::move(matches)), flags_(flags) {}

const FeedMatch* MatchFeed::find(std::string_view id) const {
  const auto found = std::ranges::find(matches_, id, &FeedMatch::id);
  return found == matches_.end() ? nullptr : &*found;
}

MatchesResponse MatchFeed::matches(Date now) const {
  MatchesResponse response{.sample = flags_.sample,
                           .stale = flags_.stale,
                           .updatedAt = toMilliseconds(now),
                           .live = {},
                           .upcoming = {},
                           .finished = {}};
  for (const FeedMatch& match : matches_) {
    Match made = record(match, now);
    auto& list = made.state == MatchPhase::notStarted ? response.upcoming
                 : made.state == MatchPhase::finished ? response.finished
                                                      : response.live;
    list.push_back(std::move(made));
  }
  return response;
}

MatchResponse MatchFeed::match(std::string_view id, Date now) const {
  MatchResponse response{.sample = flags_.sample,
                         .stale = flags_.stale,
                         .updatedAt = toMilliseconds(now),
                         .match = std::nullopt};
  if (const FeedMatch* found = find(id)) response.match = record(*found, now);
  return response;
}

std::optional<ProMatchPayload> MatchFeed::keyEvents(std::string_view id,
                                                    std::optional<std::int64_t> since,
                                                    Date now) const {
  const FeedMatch* match = find(id);
  if (match == nullptr) return std::nullopt;
  ProMatchPayload payload;
  payload.match = record(*match, now);
  const Seconds time = elapsed(*match, now);
  for (const ScriptedEvent& scripted : match->script.events()) {
    if (scripted.published > time) break;
    BoomEvent event = eventAt(*match, scripted, time);
    payload.newestEventId = event.id;
    if (!since || event.id > *since) payload.events.push_back(event);
    payload.keyMoments.push_back(std::move(event));
  }
  payload.nextFixture = nextFixture(now);
  return payload;
}

std::optional<Match> MatchFeed::nextFixture(Date now) const {
  const FeedMatch* next = nullptr;
  for (const FeedMatch& match : matches_) {
    if (!match.announcesStart || match.start <= now) continue;
    if (next == nullptr || match.start < next->start) next = &match;
  }
  if (next == nullptr) return std::nullopt;
  return record(*next, now);
}

}  // namespace kestrow::service
