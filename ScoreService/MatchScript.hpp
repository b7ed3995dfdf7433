// A played match laid out in time: what the service says of it at any moment. Times are seconds of
// the match since its scheduled start.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/Match.hpp"
#include "ScoreService/PlayedMatch.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrow::service {

struct ScriptedEvent {
  BoomEvent event;  // its `at` is not set: that depends on when and how fast the match is played
  Seconds happened{};
  Seconds published{};
  std::optional<std::string> revisedBatter;  // from `revised` on, in place of the event's own
  Seconds revised{};
};

// How a match stands at one moment.
struct MatchStand {
  MatchPhase phase = MatchPhase::notStarted;
  std::string status;
  std::vector<Innings> innings;
};

// Pace of the game.
struct Pace {
  static constexpr Seconds ball{40};
  static constexpr Seconds changeOfOver{20};
  static constexpr Seconds wicket{60};
  static constexpr Seconds inningsBreak{1200};
  static constexpr Seconds beforeSuperOver{300};
  // How long a wrong or missing report stays so.
  static constexpr Seconds slip{100};
};

class MatchScript {
 public:
  explicit MatchScript(PlayedMatch match);

  const PlayedMatch& match() const { return match_; }

  // In the order of publishing, which is that of their ids.
  const std::vector<ScriptedEvent>& events() const { return events_; }

  MatchStand standAt(Seconds elapsed) const;

  // The match is finished from here on.
  Seconds end() const { return end_; }

  // When an innings ends; its index must be less than match().innings.size().
  Seconds inningsEnd(std::size_t innings) const { return innings_[innings].end; }

  // When this many legal balls of the innings have been bowled, or its end when it is shorter.
  Seconds timeOfBall(std::size_t innings, std::int64_t legalBalls) const;

 private:
  struct ScoreAt {
    Seconds time{};
    Tally tally;
  };
  struct TimedInnings {
    Seconds begin{};
    Seconds end{};
    std::vector<ScoreAt> scores;  // by rising time, the first at `begin`
  };

  TimedInnings layOut(const PlayedInnings& innings, Seconds begin);
  void report(const Ball& ball, const std::string& team, Seconds time);
  void numberEvents();
  const ScoreAt& scoreAt(const TimedInnings& innings, Seconds elapsed) const;
  std::string statusIn(std::size_t innings, const Tally& score) const;

  PlayedMatch match_;
  std::vector<TimedInnings> innings_;
  std::vector<ScriptedEvent> events_;
  std::vector<Seconds> overEnds_;
  Seconds end_{};
};

}  // namespace kestrow::service
