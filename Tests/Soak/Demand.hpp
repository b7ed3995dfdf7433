// What the intervals demand of the program: when it has to ask and when it has to draw, reckoned
// from what it was answered, apart from how the program itself reckons it.
#pragma once

#include "KestrowCore/Date.hpp"
#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/Match.hpp"

#include <optional>
#include <string>
#include <vector>

namespace kestrow {

class Demand {
 public:
  // The user follows another match.
  void followed(const std::string& id) { followedId_ = id; }

  // A poll was answered, with nothing when it failed, which leaves the match in the phase that it
  // was last seen in.
  void polled(Date now, const std::optional<MatchesResponse>& answer);

  // The pill was drawn anew; an alert began with it, or not.
  void drawn(Date now, bool alertBegan);

  // The waits that have to be set now, the shortest first: for the next drawing and the next poll.
  std::vector<Seconds> waits(Date now) const;

 private:
  std::string followedId_;
  std::optional<MatchesResponse> list_;
  Date nextPoll_;
  Date nextDrawing_;
  Date alertEnds_;
};

}  // namespace kestrow
