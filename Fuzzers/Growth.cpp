// Does what decoders and wordings do, on inputs of growing size that are as awkward for each as can
// be thought of. Run under callgrind by growth_test.py, which counts the instructions: a count says
// the same on every machine, where a clock would not.
#include "Fuzzers/Fuzzer.hpp"
#include "Fuzzers/Shown.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/KeyMomentsLog.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "KestrowCore/MatchPicker.hpp"
#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Text.hpp"
#include "ScoreService/Cricsheet.hpp"
#include "ScoreService/MatchFeed.hpp"

#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace kestrow;

struct Case {
  const char* name;
  std::function<std::string(std::size_t size)> make;  // an input of about so many bytes
  std::function<void(const std::string& input)> work;
};

std::string repeated(std::string_view part, std::size_t size) {
  std::string out;
  while (out.size() < size) out += part;
  return out;
}

// The text as often as fits, numbered where it says "#", between a start and an end.
std::string listing(std::string_view start, std::string_view item, std::string_view end,
                    std::size_t size, bool isFalling = false) {
  const std::size_t count = size / item.size() + 1;
  std::string out(start);
  for (std::size_t i = 0; i < count; ++i) {
    std::string next(item);
    const std::string number = std::to_string(isFalling ? count - i : i);
    for (std::size_t at = 0; (at = next.find('#')) != std::string::npos;)
      next.replace(at, 1, number);
    out.append(i == 0 ? "" : ",").append(next);
  }
  return out.append(end);
}

constexpr std::string_view aMatch =
    R"({"id":"#","league":"","team1":{"name":"a","short":"A"},"team2":{"name":"b","short":"B"},)"
    R"("state":"live","status":"","innings":[]})";
constexpr std::string_view anEvent =
    R"({"id":#,"kind":"six","team":"A","batter":"b","late":false,"at":"2026-04-12T14:00:00Z"})";

constexpr std::string_view aBall = R"({"batter":"c","runs":{"batter":6,"total":6}})";

std::string payload(std::string_view events, std::string_view moments) {
  return R"({"match":)" + std::string(aMatch) + R"(,"newestEventId":1,"events":[)" +
         std::string(events) + R"(],"keyMoments":[)" + std::string(moments) + "]}";
}

void refuse(const std::string& input) {
  fuzz::require(!json::decode<MatchesResponse>(input), "it is refused");
}

void list(const std::string& input) {
  const auto response = json::decode<MatchesResponse>(input);
  fuzz::require(response.has_value(), "the list is one");
  (void)encode(*response);
  (void)PickerState::build(*response, "", [](Date) { return std::string(); });
  (void)response->match("none");
}

void events(const std::string& input) {
  const auto decoded = json::decode<ProMatchPayload>(input);
  fuzz::require(decoded.has_value(), "the payload is one");
  fuzz::show(*decoded);
}

void shorten(const std::string& status, std::string name, std::string shortName) {
  Match match;
  match.team1 = {.name = std::move(name), .shortName = std::move(shortName)};
  fuzz::require(text::characters(result_text::shortened(status, match)).size() <= 26,
                "it is short");
}

void wordPill(const std::string& input) {
  PillContent content;
  content.status = PillContent::Status::live;
  content.teams = input;
  content.battingTeam = "A";
  (void)content.teamRuns(content.teamsText().value_or(""));
  (void)content.accessibilityLabel();
  (void)PillContent::truncate(
      input, 200, [](std::string_view part) { return 7.0 * static_cast<double>(part.size()); });
}

void unicode(const std::string& input) {
  (void)text::characters(input);
  (void)text::trimmed(input, text::WhiteSpace::withLineBreaks);
  (void)text::validated(text::upperCased(input));
}

void play(const std::string& input) {
  auto match = service::readCricsheet(input);
  fuzz::require(match.has_value(), "the file is one");
  service::MatchScript script(*std::move(match));
  const Date start(std::chrono::seconds(1'776'002'400));
  const Date end = service::laterBy(start, script.end());
  const service::MatchFeed feed({{.id = "m", .script = std::move(script), .start = start}}, {});
  (void)encode(feed.matches(end));
  (void)encode(*feed.keyEvents("m", std::nullopt, end));
}

std::string file(const std::string& innings) {
  return R"({"info":{"teams":["a","b"],"overs":20},"innings":[)" + innings + "]}";
}

std::vector<Case> answers() {
  return {
      {"many matches", [](auto n) { return listing(R"({"live":[)", aMatch, "]}", n); }, list},
      {"one long text",
       [](auto n) { return R"({"live":[],"x":")" + repeated("\\u00e9\\n", n) + "\"}"; }, list},
      {"unknown keys", [](auto n) { return listing("{", R"("k#":{"a":[1,2]})", "}", n); }, list},
      {"one key again and again", [](auto n) { return listing("{", R"("live":[])", "}", n); },
       list},
      {"brackets that never close", [](auto n) { return repeated("[", n); }, refuse},
      {"a long number", [](auto n) { return R"({"x":1)" + repeated("7", n) + "}"; }, refuse},
      {"a date of many digits",
       [](auto n) { return R"({"updatedAt":"2026-04-12T14:00:00.)" + repeated("1", n) + "Z\"}"; },
       list},
      {"events backwards", [](auto n) { return payload(listing("", anEvent, "", n, true), ""); },
       events},
      {"events of one id",
       [](auto n) {
         return payload(
             "",
             listing("",
                     R"({"id":7,"kind":"x","team":"A","late":true,"at":"2026-04-12T14:00:00Z"})",
                     "", n));
       },
       events}};
}

std::vector<Case> texts() {
  return {
      {"a name everywhere", [](auto n) { return repeated("a", n); },
       [](const auto& input) { shorten(input, "a", "bb"); }},
      {"a name nearly everywhere", [](auto n) { return repeated("a", n); },
       [](const auto& input) { shorten(input, std::string(input.size() / 2, 'a') + "b", "c"); }},
      {"details in details", [](auto n) { return repeated(" (;, - ", n); },
       [](const auto& input) { shorten(input, "x", "y"); }},
      {"nothing but spaces", [](auto n) { return "a" + repeated(" ", n) + "b"; },
       [](const auto& input) { shorten(input, "x", "y"); }},
      {"one endless character", [](auto n) { return "e" + repeated("\u0301", n); },
       [](const auto& input) { shorten(input, "x", "y"); }},
      {"flags", [](auto n) { return repeated("🇮🇳", n); }, unicode},
      {"families", [](auto n) { return repeated("👨‍", n); }, unicode},
      {"broken UTF-8", [](auto n) { return repeated("\xf0\x9f\x8f\x80\xc3", n); }, unicode},
      {"teams and teams", [](auto n) { return repeated(" v ", n); }, wordPill},
      {"a long name", [](auto n) { return repeated("Wi ", n); }, wordPill}};
}

std::vector<Case> matchFiles() {
  return {
      {"many balls",
       [](auto n) {
         return file(listing(R"({"team":"a","overs":[{"deliveries":[)", aBall, "]}]}", n));
       },
       play},
      {"many overs",
       [](auto n) {
         return file(listing(R"({"team":"a","overs":[)", R"({"deliveries":[]})", "]}", n));
       },
       play},
      {"many innings", [](auto n) { return file(listing("", R"({"team":"b"})", "", n)); }, play}};
}

void count(const Case& each) {
  constexpr std::size_t small = 5'000;
  constexpr std::size_t large = 4 * small;
  each.work(each.make(small));  // what is made once only
  for (const std::size_t size : {small, large}) {
    const std::string input = each.make(size);
    CALLGRIND_ZERO_STATS;
    each.work(input);
    const std::string name = std::string(each.name) + ": " + std::to_string(input.size());
    CALLGRIND_DUMP_STATS_AT(name.c_str());
  }
}

}  // namespace

int main() {
  for (const auto& cases : {answers(), texts(), matchFiles()}) std::ranges::for_each(cases, count);
  return 0;
}
