#include "KestrowCore/PillDisplay.hpp"

#include "KestrowCore/FollowState.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Text.hpp"

#include <string_view>
#include <utility>

namespace kestrow {
namespace {

using Parts = FollowState::Parts;
using Kind = PillDisplay::Kind;

constexpr const char* separator = " · ";

// A match without anything to tell but its state.
Parts stateOnly(Kind kind, const Match& match, const std::string& state) {
  return {kind, pairing(match) + separator + state, state, std::nullopt, std::nullopt};
}

Parts describeLive(const Match& match) {
  const std::optional<Innings> innings = match.currentInnings();
  if (!innings) return stateOnly(Kind::live, match, "Live");
  std::optional<std::string> overs = innings->oversText();
  if (overs) *overs += " ov";
  return {Kind::live, innings->formatted(), innings->scoreText(), std::move(overs), innings->team};
}

Parts describeBreak(const Match& match) {
  const std::string state = "Innings break";
  const std::optional<Innings> innings = match.currentInnings();
  if (!innings) return stateOnly(Kind::inningsBreak, match, state);
  return {Kind::inningsBreak, innings->formatted() + separator + state, innings->scoreText(), state,
          innings->team};
}

Parts describeNotStarted(const Match& match, const FormatStart& formatStart) {
  if (!match.startTime) return stateOnly(Kind::notStarted, match, "Not started");
  Parts parts = stateOnly(Kind::notStarted, match, formatStart(*match.startTime));
  parts.secondary = "Starts";
  return parts;
}

Parts describeFinished(const Match& match) {
  const std::string_view status = text::trimmed(match.status, text::WhiteSpace::withLineBreaks);
  if (status.empty()) return stateOnly(Kind::finished, match, "Finished");
  return {Kind::finished, std::string(status), result_text::shortened(status, match), std::nullopt,
          std::nullopt};
}

PillDisplay message(Kind kind, const char* text) {
  PillDisplay display;
  display.kind = kind;
  display.text = text;
  display.primary = text;
  return display;
}

}  // namespace

Parts FollowState::describe(const Match& match, const FormatStart& formatStart) {
  switch (match.state) {
    case MatchPhase::live:
      return describeLive(match);
    case MatchPhase::inningsBreak:
      return describeBreak(match);
    case MatchPhase::notStarted:
      return describeNotStarted(match, formatStart);
    case MatchPhase::finished:
      break;
  }
  return describeFinished(match);
}

PillDisplay FollowState::pill(const FormatStart& formatStart) const {
  if (!followedMatchId) return message(Kind::pickMatch, PillDisplay::pickMatchText);
  if (!lastResponse) {
    return consecutiveFailures < 1 ? message(Kind::loading, PillDisplay::loadingText)
                                   : message(Kind::unavailable, PillDisplay::unavailableText);
  }
  if (!lastMatch) {
    PillDisplay display = message(Kind::pickMatch, PillDisplay::pickMatchText);
    display.isSample = lastResponse->sample;
    return display;
  }
  Parts parts = describe(*lastMatch, formatStart);
  PillDisplay display;
  display.kind = parts.kind;
  display.text = std::move(parts.text);
  if (lastResponse->sample) display.text.append(separator).append(PillDisplay::sampleLabel);
  display.isSample = lastResponse->sample;
  display.isStale = isStale();
  display.teams = pairing(*lastMatch);
  display.primary = std::move(parts.primary);
  display.secondary = std::move(parts.secondary);
  display.battingTeam = std::move(parts.batting);
  return display;
}

}  // namespace kestrow
