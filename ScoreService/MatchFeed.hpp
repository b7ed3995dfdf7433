// Matches with their start times, and what the service answers about them at a given moment. A pure
// function of what it was made from and the time asked about; any thread may ask.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Date.hpp"
#include "KestrowCore/Match.hpp"
#include "ScoreService/MatchScript.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow::service {

struct FeedMatch {
  std::string id;
  MatchScript script;
  Date start;                  // the script's zero
  bool announcesStart = true;  // whether the answers give the start time
  double speed = 1;            // seconds of the match in one second of the clock; more than zero
};

// Marks on every list and on every single match.
struct FeedFlags {
  bool sample = false;
  bool stale = false;
  bool operator==(const FeedFlags&) const = default;
};

class MatchFeed {
 public:
  // Answers list the matches in this order.
  MatchFeed(std::vector<FeedMatch> matches, FeedFlags flags);

  const std::vector<FeedMatch>& all() const { return matches_; }

  MatchesResponse matches(Date now) const;

  // Without a match when the id is unknown.
  MatchResponse match(std::string_view id, Date now) const;

  // Key events, those with an id above `since` when it is given. Nothing when the id is unknown.
  std::optional<ProMatchPayload> keyEvents(std::string_view id, std::optional<std::int64_t> since,
                                           Date now) const;

 private:
  const FeedMatch* find(std::string_view id) const;
  std::optional<Match> nextFixture(Date now) const;

  std::vector<FeedMatch> matches_;
  FeedFlags flags_;
};

// The clock's date to the millisecond, as it travels.
Date toMilliseconds(Date date);

// The date a length of time away; a script's time at a speed is a clock's time.
Date laterBy(Date date, Seconds seconds);

}  // namespace kestrow::service
