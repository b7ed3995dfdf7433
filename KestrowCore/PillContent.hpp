// What the pill is asked to show at one moment: the score, a countdown, or an alert.
#pragma once

#include "KestrowCore/PillDisplay.hpp"
#include "KestrowCore/ScoreText.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {

struct PillContent {
  enum class Status {
    live,
    inningsBreak,
    notStarted,
    finished,
    pickMatch,
    loading,
    unavailable,
    countdown,
    boom,
  };
  enum class Dot { live, amber, grey, none };

  struct TeamRun {
    std::string text;
    bool batting = false;
    bool operator==(const TeamRun&) const = default;
  };

  static constexpr const char* countdownSecondary = "to go";
  static constexpr const char* sampleTag = "SAMPLE";
  static constexpr const char* staleTag = "STALE";
  static constexpr const char* pickHint = "▸";

  Status status = Status::pickMatch;
  std::optional<std::string> teams;  // "MI v CSK"
  std::optional<std::string> battingTeam;
  std::string primary;
  std::optional<std::string> secondary;
  bool isSample = false;
  bool isStale = false;

  PillContent() = default;
  explicit PillContent(const PillDisplay& display);

  // The countdown, in place of `over`.
  static PillContent countdown(const Countdown::Parts& parts, const PillContent& over);
  static PillContent boom(std::string headline, std::string detail);

  std::optional<std::string> teamsText() const;  // "MI v CSK" in capitals
  std::vector<std::string> tags() const;
  Dot dot() const;
  bool isMessage() const;                       // nothing but a message: pick, loading, unavailable
  std::vector<std::string> drawnTexts() const;  // in reading order
  std::string accessibilityLabel() const;

  // A teams text in runs, the batting side marked.
  std::vector<TeamRun> teamRuns(std::string_view text) const;

  // The sides of a pairing, trimmed.
  static std::vector<std::string> split(std::string_view teams);

  // The longest shortening of the text, ending in "…", that measures at most `width` points.
  static std::string truncate(std::string_view text, double width,
                              const std::function<double(std::string_view)>& measure);

  bool operator==(const PillContent&) const = default;
};

// Without U+0020 at the end.
std::string_view trimmingTrailingSpaces(std::string_view text);

}  // namespace kestrow
