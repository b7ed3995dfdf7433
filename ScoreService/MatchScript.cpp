#include "ScoreService/MatchScript.hpp"

#include "ScoreService/ResultText.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kestrow::service {
namespace {

// A match that ended before a ball was bowled is still on the list as live for a moment.
constexpr Seconds shortestMatch{60};

ScriptedEvent makeEvent(BoomKind kind, const std::string& team, const std::string& batter,
                        Seconds time) {
  ScriptedEvent made;
  made.event = {.kind = kind, .team = team, .batter = batter};
  made.happened = made.published = time;
  return made;
}

ScriptedEvent makeCorrection(const char* field, const std::string& team, const std::string& batter,
                             Seconds time) {
  auto made = makeEvent(BoomKind::correction, team, batter, time + Pace::slip);
  made.event.field = field;
  return made;
}

void delay(ScriptedEvent& event) {
  event.event.late = true;
  event.published = event.happened + Pace::slip;
}

}  // namespace

MatchScript::MatchScript(PlayedMatch match) : match_(std::move(match)) {
  Seconds time{0};
  for (const PlayedInnings& innings : match_.innings) {
    if (!innings_.empty()) time += innings.isSuperOver ? Pace::beforeSuperOver : Pace::inningsBreak;
    innings_.push_back(layOut(innings, time));
    time = innings_.back().end;
  }
  end_ = std::max(time, shortestMatch);
  numberEvents();
}

MatchScript::TimedInnings MatchScript::layOut(const PlayedInnings& innings, Seconds begin) {
  const std::string& team = innings.team == 0 ? match_.team1.shortName : match_.team2.shortName;
  Tally score{.runs = innings.runsBefore, .wickets = 0, .legalBalls = 0};
  TimedInnings timed{.begin = begin, .end = begin, .scores = {{.time = begin, .tally = score}}};
  Seconds time = begin;
  for (const Ball& ball : innings.balls) {
    time += Pace::ball;
    score.runs += ball.runs;
    score.wickets += static_cast<std::int64_t>(ball.out.size());
    score.legalBalls += ball.isLegal ? 1 : 0;
    timed.scores.push_back({.time = time, .tally = score});
    report(ball, team, time);
    timed.end = time;
    if (!ball.out.empty()) time += Pace::wicket;
    if (ball.endsOver) {
      overEnds_.push_back(time);
      time += Pace::changeOfOver;
    }
  }
  timed.scores.back().tally.runs += innings.runsAfter;
  return timed;
}

void MatchScript::report(const Ball& ball, const std::string& team, Seconds time) {
  if (ball.boundary) {
    auto event = makeEvent(*ball.boundary, team, ball.batter, time);
    if (ball.slip == Slip::late) delay(event);
    if (ball.slip == Slip::wrongBatter) {
      event.event.batter = ball.partner;
      event.revisedBatter = ball.batter;
      event.revised = time + Pace::slip;
    }
    if (ball.slip == Slip::calledSix) {
      events_.push_back(makeEvent(BoomKind::six, team, ball.batter, time));
      events_.push_back(makeCorrection("sixes", team, ball.batter, time));
      delay(event);
    }
    events_.push_back(std::move(event));
  }
  for (const std::string& batter : ball.out) {
    auto event = makeEvent(BoomKind::wicket, team, batter, time);
    if (ball.slip == Slip::late) delay(event);
    events_.push_back(std::move(event));
  }
  if (ball.slip == Slip::calledFour) {
    events_.push_back(makeEvent(BoomKind::four, team, ball.batter, time));
    events_.push_back(makeCorrection("fours", team, ball.batter, time));
  }
  if (ball.slip == Slip::calledWicket) {
    events_.push_back(makeEvent(BoomKind::wicket, team, ball.batter, time));
    events_.push_back(makeCorrection("wickets", team, ball.batter, time));
  }
  if (ball.milestone) {
    events_.push_back(makeEvent(BoomKind::other, team, *ball.milestone, time));
  }
}

void MatchScript::numberEvents() {
  std::ranges::stable_sort(events_, {}, &ScriptedEvent::published);
  std::int64_t id = 0;
  auto overEnd = overEnds_.begin();
  for (ScriptedEvent& event : events_) {
    for (; overEnd != overEnds_.end() && *overEnd < event.published; ++overEnd) {
      id += match_.idGapPerOver;
    }
    event.event.id = ++id;
  }
}

const MatchScript::ScoreAt& MatchScript::scoreAt(const TimedInnings& innings,
                                                 Seconds elapsed) const {
  const auto after = std::ranges::upper_bound(innings.scores, elapsed, {}, &ScoreAt::time);
  return *std::prev(after);
}

std::string MatchScript::statusIn(std::size_t innings, const Tally& score) const {
  const PlayedInnings& played = match_.innings[innings];
  const std::string prefix = played.isSuperOver ? "Super Over" : "";
  if (played.target && score.runs < *played.target) {
    const std::string& team = played.team == 0 ? match_.team1.name : match_.team2.name;
    const std::int64_t ballsLeft = std::max<std::int64_t>(played.maxBalls - score.legalBalls, 0);
    return (prefix.empty() ? "" : prefix + ": ") +
           chaseText(team, *played.target - score.runs, ballsLeft);
  }
  return prefix.empty() ? match_.openingStatus : prefix;
}

MatchStand MatchScript::standAt(Seconds elapsed) const {
  if (elapsed < Seconds(0)) return {MatchPhase::notStarted, "Match not started", {}};
  MatchStand stand{MatchPhase::live, match_.openingStatus, {}};
  for (std::size_t i = 0; i < innings_.size() && elapsed >= innings_[i].begin; ++i) {
    const Tally& score = scoreAt(innings_[i], elapsed).tally;
    const auto& team = match_.innings[i].team == 0 ? match_.team1 : match_.team2;
    stand.innings.push_back({.team = team.shortName,
                             .runs = score.runs,
                             .wickets = score.wickets,
                             .overs = oversFromBalls(score.legalBalls)});
    stand.phase = MatchPhase::live;
    stand.status = statusIn(i, score);
    if (elapsed >= innings_[i].end && i + 1 < innings_.size()) {
      stand.phase = MatchPhase::inningsBreak;
      stand.status =
          match_.innings[i + 1].isSuperOver ? "Scores level, Super Over next" : "Innings break";
    }
  }
  if (elapsed >= end_) {
    stand.phase = MatchPhase::finished;
    stand.status = match_.result;
  }
  return stand;
}

Seconds MatchScript::timeOfBall(std::size_t innings, std::int64_t legalBalls) const {
  for (const ScoreAt& score : innings_[innings].scores) {
    if (score.tally.legalBalls >= legalBalls) return score.time;
  }
  return innings_[innings].end;
}

}  // namespace kestrow::service
