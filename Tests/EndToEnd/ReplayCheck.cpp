#include "Tests/EndToEnd/ReplayCheck.hpp"

#include "KestrowCore/Json.hpp"
#include "ScoreService/Feeds.hpp"
#include "Tests/EndToEnd/FollowedMatch.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace kestrow {
namespace {

constexpr int mostPolls = 2000;

std::string textAt(const json::Value& value, std::string_view key) {
  const auto found = value.find(key);
  return std::string(found ? found->text().value_or("") : "");
}

std::int64_t numberAt(const json::Value& value, std::string_view key) {
  const auto found = value.find(key);
  return found ? found->integer().value_or(0) : 0;
}

template <class Action>
void forEach(const std::optional<json::Value>& list, const Action& action) {
  if (!list) return;
  json::Items items(*list);
  for (json::Value item; items.next(item);) action(item);
}

void readDelivery(const json::Value& delivery, FileFacts& facts, std::int64_t& runs,
                  std::int64_t& wickets) {
  const auto ofBall = delivery.find("runs");
  if (!ofBall) return;
  runs += numberAt(*ofBall, "total");
  const std::int64_t bat = numberAt(*ofBall, "batter");
  const auto ran = ofBall->find("non_boundary");
  if ((bat == 4 || bat == 6) && !(ran && ran->boolean().value_or(false))) {
    facts.keyEvents.push_back((bat == 4 ? "four " : "six ") + textAt(delivery, "batter"));
  }
  forEach(delivery.find("wickets"), [&](const json::Value& wicket) {
    const std::string kind = textAt(wicket, "kind");
    if (kind == "retired hurt" || kind == "retired not out") return;
    ++wickets;
    facts.keyEvents.push_back("wicket " + textAt(wicket, "player_out"));
  });
}

void readInnings(const json::Value& innings, FileFacts& facts) {
  std::int64_t runs = 0;
  std::int64_t wickets = 0;
  if (const auto penalties = innings.find("penalty_runs")) {
    runs += numberAt(*penalties, "pre") + numberAt(*penalties, "post");
  }
  forEach(innings.find("overs"), [&](const json::Value& over) {
    forEach(over.find("deliveries"),
            [&](const json::Value& delivery) { readDelivery(delivery, facts, runs, wickets); });
  });
  facts.scores.push_back(textAt(innings, "team") + " " + std::to_string(runs) + "/" +
                         std::to_string(wickets));
}

std::string resultOf(const json::Value& outcome) {
  const std::string winner = textAt(outcome, "winner");
  std::string text = "No result";
  if (!winner.empty()) {
    text = winner + " won";
    if (const auto by = outcome.find("by")) {
      const std::int64_t runs = numberAt(*by, "runs");
      const std::int64_t wickets = numberAt(*by, "wickets");
      if (runs > 0) text += " by " + std::to_string(runs) + (runs == 1 ? " run" : " runs");
      if (wickets > 0) {
        text += " by " + std::to_string(wickets) + (wickets == 1 ? " wicket" : " wickets");
      }
    }
  } else if (textAt(outcome, "result") == "tie") {
    text = "Match tied";
    const std::string eliminator = textAt(outcome, "eliminator");
    if (!eliminator.empty()) text += " (" + eliminator + " won the Super Over)";
  }
  const std::string method = textAt(outcome, "method");
  return method.empty() ? text : text + " (" + method + ")";
}

std::size_t countOf(const std::vector<std::string>& events, std::string_view kind) {
  return static_cast<std::size_t>(std::ranges::count_if(
      events, [&](const std::string& event) { return event.starts_with(kind); }));
}

// An alert in the words of FileFacts::keyEvents.
std::string inWords(const BoomEvent& event) {
  static const std::map<BoomKind, std::string> words{
      {BoomKind::four, "four "}, {BoomKind::six, "six "}, {BoomKind::wicket, "wicket "}};
  const auto word = words.find(event.kind);
  return (word == words.end() ? "other " : word->second) + event.batter.value_or("");
}

std::vector<std::string> inWords(const std::vector<BoomEvent>& events) {
  std::vector<std::string> made;
  made.reserve(events.size());
  for (const BoomEvent& event : events) made.push_back(inWords(event));
  return made;
}

// The lines that the log should hold, from the file's events and the teams that they belong to.
std::vector<std::string> expectedLines(const FileFacts& facts,
                                       const std::vector<BoomEvent>& entries) {
  static const std::map<std::string, std::string> labels{
      {"four", "FOUR"}, {"six", "SIX"}, {"wicket", "WICKET"}};
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < facts.keyEvents.size(); ++i) {
    const std::string& event = facts.keyEvents[i];
    const auto space = event.find(' ');
    const std::string team = i < entries.size() ? entries[i].team : "";
    lines.push_back(labels.at(event.substr(0, space)) + " — " + event.substr(space + 1) + " (" +
                    team + ")");
  }
  return lines;
}

std::vector<std::string> scoresOf(const Match& match) {
  std::vector<std::string> made;
  for (const Innings& innings : match.innings) {
    const Team& team = innings.team == match.team1.shortName ? match.team1 : match.team2;
    made.push_back(team.name + " " + innings.scoreText());
  }
  return made;
}

void checkAlerts(const FollowedMatch& followed, ReplayReport& report) {
  const auto due = alertsOf(followed.answers());
  report.alertsDue = due.size();
  report.alertsShown = followed.shown().size();
  std::vector<BoomEvent> shown;
  std::set<std::int64_t> ids;
  for (const ShownAlert& alert : followed.shown()) {
    shown.push_back(alert.event);
    if (!ids.insert(alert.event.id).second) report.mistakes.emplace_back("an alert came twice");
    if (alert.until - alert.from != BoomQueue::showDuration) {
      report.mistakes.emplace_back("an alert did not show for four seconds");
    }
  }
  if (shown != due) report.mistakes.emplace_back("the alerts are not those that were due");
  const auto words = inWords(shown);
  report.shownFours = countOf(words, "four ");
  report.shownSixes = countOf(words, "six ");
  report.shownWickets = countOf(words, "wicket ");
}

void checkEvents(FollowedMatch& followed, const FileFacts& facts, ReplayReport& report) {
  std::vector<BoomEvent> received;
  for (const ProMatchPayload& answer : followed.answers()) {
    std::ranges::copy(answer.events, std::back_inserter(received));
  }
  if (inWords(received) != facts.keyEvents) {
    report.mistakes.emplace_back("the events are not the file's");
  }
  if (followed.answers().front().newestEventId != 0) {
    report.mistakes.emplace_back("the first answer came too late to see every event as new");
  }
  const KeyMomentsLog& log = followed.proPoller().log();
  report.logLines = log.lines().size();
  if (log.entries != followed.answers().back().keyMoments ||
      log.lines() != expectedLines(facts, log.entries)) {
    report.mistakes.emplace_back("the log is not the file's key moments");
  }
}

}  // namespace

std::expected<FileFacts, std::string> factsOf(const std::filesystem::path& file) {
  const std::string text = fileContent(file);
  const auto document = json::Document::parse(text);
  if (!document) return std::unexpected(document.error().description());
  const auto info = document->root().find("info");
  if (!info) return std::unexpected("no info");
  FileFacts facts;
  forEach(info->find("teams"),
          [&](const json::Value& team) { facts.teams.emplace_back(team.text().value_or("")); });
  if (const auto outcome = info->find("outcome")) facts.result = resultOf(*outcome);
  forEach(document->root().find("innings"),
          [&](const json::Value& innings) { readInnings(innings, facts); });
  return facts;
}

ReplayReport checkReplay(const std::filesystem::path& file, double speed) {
  ReplayReport report;
  report.match = file.stem().string();
  const auto facts = factsOf(file);
  const Date start = *parseInternetDate("2026-04-12T14:00:00Z");
  auto feed = service::replayFeed(
      {file}, {.start = {service::StartPoint::Stage::before}, .speed = speed}, start);
  if (!facts || !feed) {
    report.mistakes.push_back(facts ? feed.error() : facts.error());
    return report;
  }
  report.expectedFours = countOf(facts->keyEvents, "four ");
  report.expectedSixes = countOf(facts->keyEvents, "six ");
  report.expectedWickets = countOf(facts->keyEvents, "wicket ");
  report.expectedScores = facts->scores;
  report.expectedResult = facts->result;

  FollowedMatch followed(*std::move(feed), report.match, start);
  if (!followed.playToTheEnd(mostPolls)) report.mistakes.emplace_back("the match did not end");
  checkAlerts(followed, report);
  checkEvents(followed, *facts, report);
  const Match match = followed.poller().state().lastMatch.value_or(Match{});
  report.scores = scoresOf(match);
  report.result = match.status;
  if (report.scores != facts->scores) report.mistakes.emplace_back("the scores are not the file's");
  if (report.result != facts->result) report.mistakes.emplace_back("the result is not the file's");
  return report;
}

}  // namespace kestrow
