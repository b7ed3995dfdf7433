#include "Fuzzers/Shown.hpp"

#include "Fuzzers/Fuzzer.hpp"
#include "KestrowCore/BoomQueue.hpp"
#include "KestrowCore/FollowState.hpp"
#include "KestrowCore/KeyMomentsLog.hpp"
#include "KestrowCore/MatchPicker.hpp"
#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/PillDisplay.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Text.hpp"

#include <algorithm>
#include <span>
#include <variant>

namespace kestrow::fuzz {
namespace {

const Calendar calendar{.system = "gregorian", .timeZone = "Asia/Kolkata"};
const Locale locale{"en_IN"};
const Date now = *parseInternetDate("2026-04-12T14:00:00Z");

std::string wordStart(Date date) {
  return start_time_text::relative(date, now, calendar, locale);
}

bool isUnicode(const std::string& text) {
  return text::validated(text) == text;
}

void checkPill(const PillDisplay& display) {
  const PillContent content(display);
  require(isUnicode(display.text), "the pill's line is Unicode");
  require(std::ranges::all_of(content.drawnTexts(), isUnicode), "the pill's texts are Unicode");
  require(isUnicode(content.accessibilityLabel()), "the pill's label is Unicode");
  if (content.teams) {
    const std::string teams = content.teamsText().value_or("");
    std::string runs;
    for (const PillContent::TeamRun& run : content.teamRuns(teams)) runs += run.text;
    require(runs == teams, "the runs of the teams' text are the text");
  }
  if (display.kind == PillDisplay::Kind::finished) {
    require(text::characters(display.primary).size() <= result_text::maxLength,
            "a result has at most 26 characters");
  }
}

void checkPicker(const MatchesResponse& response, const std::string& followedId) {
  const PickerState state = PickerState::build(response, followedId, wordStart);
  const auto* loaded = std::get_if<PickerState::Loaded>(&state.value);
  if (loaded == nullptr) return;
  std::size_t rows = 0;
  for (const PickerSection& section : loaded->sections) {
    require(!section.rows.empty(), "a section has rows");
    rows += section.rows.size();
    for (const PickerRow& row : section.rows) {
      require(isUnicode(row.teams) && isUnicode(row.detail), "a row's texts are Unicode");
      require(row.isFollowed == (row.id == followedId), "the followed row is marked");
    }
  }
  require(rows <= response.live.size() + response.upcoming.size(), "no row is made up");
}

}  // namespace

void show(const MatchesResponse& response) {
  constexpr std::size_t most = 4;  // of each list: the others are alike
  FollowState state;
  for (const auto* list : {&response.live, &response.upcoming, &response.finished}) {
    for (const Match& match : std::span(*list).first(std::min(list->size(), most))) {
      state.follow(match.id);
      state.apply(response);
      checkPill(state.pill(wordStart));
      checkPicker(response, match.id);
      const PillDisplay waiting{.kind = PillDisplay::Kind::notStarted};
      const auto countdown = Countdown::text(waiting, std::nullopt, match, now);
      require(!countdown || isUnicode(*countdown), "the countdown is Unicode");
    }
  }
  checkPicker(response, "");
}

void show(const ProMatchPayload& payload) {
  KeyMomentsLog log;
  log.merge(payload.keyMoments);
  log.merge(payload.events);
  require(std::ranges::is_sorted(log.entries, std::ranges::less_equal(), &BoomEvent::id) ||
              log.entries.size() < 2,
          "the log is in the order of ids, each once");
  KeyMomentsLog again = log;
  again.merge(payload.events);
  require(again == log, "taking the same events again changes nothing");
  require(std::ranges::all_of(log.lines(), isUnicode), "the log's lines are Unicode");

  BoomQueue queue;
  queue.ingest(payload.events);
  require(queue.ingest(payload.events).empty(), "the same events are new once only");
  require(queue.pending.size() <= BoomQueue::maxPerBurst, "at most three alerts wait");
  std::size_t alerts = 0;
  for (Date time = now; queue.boom(time); time += BoomQueue::showDuration) ++alerts;
  require(alerts <= BoomQueue::maxPerBurst && queue.isEmpty(), "the alerts come to an end");
}

}  // namespace kestrow::fuzz
