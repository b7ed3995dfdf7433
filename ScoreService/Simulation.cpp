#include "ScoreService/Simulation.hpp"

#include "ScoreService/Random.hpp"
#include "ScoreService/ResultText.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrow::service {
namespace {

constexpr std::int64_t oversOfBowler = 4;
constexpr int maxSuperOvers = 3;  // then the points are shared

struct Squad {
  std::vector<std::string> batters;  // in batting order
  std::vector<std::string> bowlers;  // six of the same eleven
};

std::vector<std::string> inventedNames(Random& random, std::size_t count) {
  static constexpr std::array<const char*, 40> surnames{
      "Kanetkar", "Bhandari", "Oberoi",   "Marlowe",  "Devarakonda", "Pillai",    "Thackery",
      "Rane",     "Sodhani",  "Vance",    "Iyengar",  "Mahlangu",    "Quillan",   "Dhanraj",
      "Fernando", "Gokhale",  "Hallam",   "Jadeep",   "Kulasiri",    "Lamichhan", "Mistry",
      "Nadkarni", "Ostler",   "Purohit",  "Raghavan", "Sawhney",     "Tambe",     "Umarji",
      "Vengurla", "Wadekar",  "Yelburga", "Zafri",    "Ashcombe",    "Barooah",   "Chitale",
      "Dalvi",    "Ellery",   "Farooqi",  "Ghorpade", "Hosseini"};
  static constexpr std::string_view initials = "ABCDGHJKMNPRSTVY";
  std::vector<std::string> names;
  std::vector<const char*> left(surnames.begin(), surnames.end());
  while (names.size() < count) {
    const auto chosen = left.begin() + static_cast<std::ptrdiff_t>(random.below(left.size()));
    std::string name(1, initials[random.below(initials.size())]);
    if (random.chance(0.35)) name += initials[random.below(initials.size())];
    names.push_back(name + " " + *chosen);
    left.erase(chosen);
  }
  return names;
}

Squad squad(std::vector<std::string> eleven) {
  Squad made{.batters = std::move(eleven), .bowlers = {}};
  made.bowlers.assign(made.batters.end() - 6, made.batters.end());
  return made;
}

// One innings under way: who is in, who bowls, and what the last ball left behind.
class InningsPlay {
 public:
  InningsPlay(Random& random, const Squad& batting, const Squad& bowling, PlayedInnings& innings)
      : random_(random), batting_(batting), bowling_(bowling), innings_(innings) {}

  void play() {
    while (!isOver()) {
      chooseBowler();
      for (int legal = 0; legal < 6 && !isOver();) {
        innings_.balls.push_back(nextBall());
        legal += innings_.balls.back().isLegal ? 1 : 0;
        account(innings_.balls.back());
      }
      innings_.balls.back().endsOver = true;
      std::swap(striker_, partner_);
    }
  }

 private:
  std::int64_t maxWickets() const { return innings_.isSuperOver ? 2 : 10; }

  bool isOver() const {
    return legalBalls_ >= innings_.maxBalls || wickets_ >= maxWickets() ||
           (innings_.target && runs_ >= *innings_.target);
  }

  void chooseBowler() {
    // Six bowlers have 24 overs between them, so before each of the 20 at least two have one left.
    std::vector<std::size_t> free;
    for (std::size_t i = 0; i < bowling_.bowlers.size(); ++i) {
      if (oversBowled_[i] < oversOfBowler && bowler_ != i) free.push_back(i);
    }
    bowler_ = free[random_.below(free.size())];
    ++oversBowled_[*bowler_];
  }

  // Batting grows bolder as the overs run out, and when the target asks for it.
  double boldness() const {
    const double progress =
        static_cast<double>(legalBalls_) / static_cast<double>(innings_.maxBalls);
    double bold = innings_.isSuperOver ? 1.6 : 0.85 + 0.6 * progress;
    if (innings_.target && legalBalls_ < innings_.maxBalls) {
      const double asked = static_cast<double>(*innings_.target - runs_) /
                           static_cast<double>(innings_.maxBalls - legalBalls_);
      bold = std::clamp(bold * (0.55 + asked / 3.0), 0.6, 1.9);
    }
    return bold;
  }

  Ball nextBall() {
    Ball ball;
    ball.batter = batting_.batters[striker_];
    ball.partner = batting_.batters[partner_];
    ball.bowler = bowling_.bowlers[*bowler_];
    if (random_.chance(0.035)) {
      wide(ball);
    } else if (random_.chance(0.006)) {
      noBall(ball);
    } else {
      legalBall(ball);
    }
    return ball;
  }

  void wide(Ball& ball) {
    ball.isLegal = false;
    ball.runs = random_.chance(0.06) ? 5 : 1;
    runsRun_ = ball.runs - 1;
  }

  void noBall(Ball& ball) {
    ball.isLegal = false;
    hit(ball, 1.4);
    ball.runs += 1;
    isFreeHit_ = true;
  }

  void legalBall(Ball& ball) {
    const bool mayBeOut = !isFreeHit_;
    isFreeHit_ = false;
    const double bold = boldness();
    if (mayBeOut && random_.chance(0.038 * bold * (striker_ > 6 ? 1.8 : 1.0))) {
      getOut(ball);
    } else if (random_.chance(0.02)) {
      byes(ball);
    } else {
      hit(ball, bold);
    }
  }

  void getOut(Ball& ball) {
    runsRun_ = 0;
    const bool isRunOut = random_.chance(0.08);
    if (isRunOut && random_.chance(0.5)) ball.runs = runsRun_ = 1;
    ball.out.push_back(ball.batter);
    if (random_.chance(0.06)) ball.slip = Slip::late;
  }

  // Runs off the pads or past everyone: a four among them is not the batter's.
  void byes(Ball& ball) {
    static constexpr std::array<std::int64_t, 3> values{1, 2, 4};
    static constexpr std::array<double, 3> weights{0.8, 0.1, 0.1};
    ball.runs = runsRun_ = values[random_.weighted(weights)];
  }

  void hit(Ball& ball, double bold) {
    static constexpr std::array<std::int64_t, 6> values{0, 1, 2, 3, 4, 6};
    const std::array<double, 6> weights{0.38 / bold, 0.38,         0.07,
                                        0.006,       0.115 * bold, 0.05 * bold * bold};
    ball.runs = runsRun_ = values[random_.weighted(weights)];
    if (ball.runs == 4) ball.boundary = BoomKind::four;
    if (ball.runs == 6) ball.boundary = BoomKind::six;
    ball.slip = slip(ball);
    auto& score = scores_[ball.batter];
    const std::int64_t before = score;
    score += ball.runs;
    if ((before < 50 && score >= 50) || (before < 100 && score >= 100)) {
      ball.milestone = ball.batter;
    }
  }

  Slip slip(const Ball& ball) {
    if (ball.boundary) {
      if (random_.chance(0.05)) return Slip::late;
      if (random_.chance(0.05)) return Slip::wrongBatter;
      if (ball.boundary == BoomKind::four && random_.chance(0.04)) return Slip::calledSix;
      return Slip::none;
    }
    if (ball.runs == 0 && random_.chance(0.012)) return Slip::calledWicket;
    if (ball.runs >= 2 && random_.chance(0.1)) return Slip::calledFour;
    return Slip::none;
  }

  void account(const Ball& ball) {
    runs_ += ball.runs;
    legalBalls_ += ball.isLegal ? 1 : 0;
    wickets_ += static_cast<std::int64_t>(ball.out.size());
    if (runsRun_ % 2 == 1) std::swap(striker_, partner_);
    // A new batter takes the place of the one who is out, as long as there is one.
    if (!ball.out.empty() && nextIn_ < batting_.batters.size()) {
      (ball.out.front() == batting_.batters[striker_] ? striker_ : partner_) = nextIn_++;
    }
  }

  Random& random_;
  const Squad& batting_;
  const Squad& bowling_;
  PlayedInnings& innings_;
  std::size_t striker_ = 0;
  std::size_t partner_ = 1;
  std::size_t nextIn_ = 2;
  std::optional<std::size_t> bowler_;
  std::array<std::int64_t, 6> oversBowled_{};
  std::map<std::string, std::int64_t> scores_;
  std::int64_t runs_ = 0;
  std::int64_t wickets_ = 0;
  std::int64_t legalBalls_ = 0;
  std::int64_t runsRun_ = 0;  // by the batters on the last ball: an odd number changes ends
  bool isFreeHit_ = false;
};

PlayedInnings playInnings(Random& random, const std::array<Squad, 2>& squads,
                          PlayedInnings innings) {
  InningsPlay(random, squads[innings.team], squads[1 - innings.team], innings).play();
  return innings;
}

// Whoever batted second bats first in a super over.
void playSuperOver(Random& random, const std::array<Squad, 2>& squads, PlayedMatch& match) {
  const std::size_t first = match.innings.back().team;
  PlayedInnings opening{.team = first, .isSuperOver = true, .maxBalls = 6};
  match.innings.push_back(playInnings(random, squads, std::move(opening)));
  PlayedInnings reply{.team = 1 - first, .isSuperOver = true, .maxBalls = 6};
  reply.target = tally(match.innings.back()).runs + 1;
  match.innings.push_back(playInnings(random, squads, std::move(reply)));
}

bool isLevel(const PlayedMatch& match) {
  const auto count = match.innings.size();
  return tally(match.innings[count - 1]).runs == tally(match.innings[count - 2]).runs;
}

}  // namespace

PlayedMatch simulateMatch(std::uint64_t seed, const Team& team1, const Team& team2) {
  Random random(seed);
  auto names = inventedNames(random, 22);
  const std::vector<std::string> others(names.begin() + 11, names.end());
  names.resize(11);
  const std::array<Squad, 2> squads{squad(std::move(names)), squad(others)};

  PlayedMatch match;
  match.league = "T20";
  match.idGapPerOver = 1;
  match.tournament = "Premier T20 League";
  match.team1 = team1;
  match.team2 = team2;
  const std::size_t first = random.below(2);
  const bool choseToBat = random.chance(0.4);
  const Team& tossWinner = (first == 0) == choseToBat ? team1 : team2;
  match.openingStatus =
      tossWinner.name + " won the toss and chose to " + (choseToBat ? "bat" : "field");

  match.innings.push_back(playInnings(random, squads, PlayedInnings{.team = first}));
  PlayedInnings chase{.team = 1 - first};
  chase.target = tally(match.innings.front()).runs + 1;
  match.innings.push_back(playInnings(random, squads, std::move(chase)));
  for (int i = 0; i < maxSuperOvers && isLevel(match); ++i) playSuperOver(random, squads, match);
  match.result = resultText(match);
  return match;
}

}  // namespace kestrow::service
