#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/Text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Status = PillContent::Status;
using Dot = PillContent::Dot;

PillContent content(Status status) {
  PillContent result;
  result.status = status;
  result.teams = "Mi v Csk";
  result.battingTeam = "Mi";
  result.primary = "145/3";
  result.secondary = "15.2 ov";
  return result;
}

PillDisplay display(PillDisplay::Kind kind) {
  PillDisplay result;
  result.kind = kind;
  result.text = "MI 145/3 (15.2)";
  result.isSample = true;
  result.isStale = true;
  result.teams = "MI v CSK";
  result.primary = "145/3";
  result.secondary = "15.2 ov";
  result.battingTeam = "MI";
  return result;
}

TEST(PillContentOfADisplay, CarriesEverythingOfAMatch) {
  using Kind = PillDisplay::Kind;
  const std::vector<std::pair<Kind, Status>> kinds = {
      {Kind::live, Status::live},
      {Kind::inningsBreak, Status::inningsBreak},
      {Kind::notStarted, Status::notStarted},
      {Kind::finished, Status::finished},
  };
  for (const auto& [kind, status] : kinds) {
    const PillContent made(display(kind));
    EXPECT_EQ(made.status, status);
    EXPECT_EQ(made.teams, "MI v CSK");
    EXPECT_EQ(made.battingTeam, "MI");
    EXPECT_EQ(made.primary, "145/3");
    EXPECT_EQ(made.secondary, "15.2 ov");
    EXPECT_TRUE(made.isSample);
    EXPECT_TRUE(made.isStale);
  }
  PillDisplay fresh = display(Kind::live);
  fresh.isSample = false;
  EXPECT_FALSE(PillContent(fresh).isSample);
  EXPECT_TRUE(PillContent(fresh).isStale);
}

TEST(PillContentOfADisplay, IsJustTheMessageWithoutAMatch) {
  using Kind = PillDisplay::Kind;
  PillContent expected;
  expected.status = Status::pickMatch;
  expected.primary = "Pick a match";
  EXPECT_EQ(PillContent(display(Kind::pickMatch)), expected);
  expected.status = Status::loading;
  expected.primary = "Loading…";
  EXPECT_EQ(PillContent(display(Kind::loading)), expected);
  expected.status = Status::unavailable;
  expected.primary = "Scores unavailable";
  EXPECT_EQ(PillContent(display(Kind::unavailable)), expected);
}

TEST(CountdownContent, SaysHowLongToGoAndWhetherTheReplacedContentWasStale) {
  PillContent over = content(Status::finished);
  over.isSample = true;
  over.isStale = true;
  PillContent expected;
  expected.status = Status::countdown;
  expected.teams = "RR v GT";
  expected.primary = "2d 5h";
  expected.secondary = "to go";
  expected.isStale = true;
  EXPECT_EQ(PillContent::countdown({"RR v GT", "2d 5h"}, over), expected);
  over.isStale = false;
  expected.isStale = false;
  EXPECT_EQ(PillContent::countdown({"RR v GT", "2d 5h"}, over), expected);
}

TEST(BoomContent, IsTheHeadlineAndTheDetail) {
  PillContent expected;
  expected.status = Status::boom;
  expected.primary = "SIX!";
  expected.secondary = "Sharma (MI)";
  EXPECT_EQ(PillContent::boom("SIX!", "Sharma (MI)"), expected);
}

TEST(PillContentSplit, CutsAtEveryVersusAndTrims) {
  EXPECT_THAT(PillContent::split("MI v CSK"), ElementsAre("MI", "CSK"));
  EXPECT_THAT(PillContent::split(" MI \n v \t CSK\u00a0"), ElementsAre("MI", "CSK"));
  EXPECT_THAT(PillContent::split("A v B v C"), ElementsAre("A", "B", "C"));
  EXPECT_THAT(PillContent::split("A v v B"), ElementsAre("A", "v B"));
  EXPECT_THAT(PillContent::split("MI V CSK"), ElementsAre("MI V CSK"));
  EXPECT_THAT(PillContent::split("MIvCSK"), ElementsAre("MIvCSK"));
  EXPECT_THAT(PillContent::split(" v "), ElementsAre("", ""));
  EXPECT_THAT(PillContent::split(""), ElementsAre(""));
}

TEST(PillContentTeams, AreInCapitalsButForTheVersus) {
  PillContent pill = content(Status::live);
  EXPECT_EQ(pill.teamsText(), "MI v CSK");
  pill.teams = " groß  v csk ";
  EXPECT_EQ(pill.teamsText(), "GROSS v CSK");
  pill.teams = "a v b v c ";
  EXPECT_EQ(pill.teamsText(), "A V B V C ");
  pill.teams = "final";
  EXPECT_EQ(pill.teamsText(), "FINAL");
  pill.teams.reset();
  EXPECT_EQ(pill.teamsText(), std::nullopt);
}

TEST(PillContentTeams, AreNotShownInMessagesAndAlerts) {
  for (const Status status :
       {Status::pickMatch, Status::loading, Status::unavailable, Status::boom}) {
    EXPECT_EQ(content(status).teamsText(), std::nullopt);
  }
  for (const Status status : {Status::live, Status::inningsBreak, Status::notStarted,
                              Status::finished, Status::countdown}) {
    EXPECT_EQ(content(status).teamsText(), "MI v CSK");
  }
}

TEST(PillContentTags, SaySampleBeforeStale) {
  PillContent pill = content(Status::countdown);
  EXPECT_THAT(pill.tags(), IsEmpty());
  pill.isStale = true;
  EXPECT_THAT(pill.tags(), ElementsAre("STALE"));
  pill.isSample = true;
  EXPECT_THAT(pill.tags(), ElementsAre("SAMPLE", "STALE"));
  pill.isStale = false;
  EXPECT_THAT(pill.tags(), ElementsAre("SAMPLE"));
}

TEST(PillContentTags, AreNotShownInMessagesAndAlerts) {
  for (const Status status :
       {Status::pickMatch, Status::loading, Status::unavailable, Status::boom}) {
    PillContent pill = content(status);
    pill.isSample = pill.isStale = true;
    EXPECT_THAT(pill.tags(), IsEmpty());
  }
}

TEST(PillContentDot, TellsTheState) {
  EXPECT_EQ(content(Status::live).dot(), Dot::live);
  EXPECT_EQ(content(Status::inningsBreak).dot(), Dot::amber);
  EXPECT_EQ(content(Status::notStarted).dot(), Dot::amber);
  EXPECT_EQ(content(Status::countdown).dot(), Dot::amber);
  EXPECT_EQ(content(Status::finished).dot(), Dot::grey);
  EXPECT_EQ(content(Status::pickMatch).dot(), Dot::grey);
  EXPECT_EQ(content(Status::loading).dot(), Dot::grey);
  EXPECT_EQ(content(Status::unavailable).dot(), Dot::grey);
  EXPECT_EQ(content(Status::boom).dot(), Dot::none);
}

TEST(PillContentDot, IsGreyWhereTheDataCannotBeRelied) {
  for (const Status status :
       {Status::live, Status::inningsBreak, Status::notStarted, Status::countdown}) {
    PillContent pill = content(status);
    pill.isSample = true;
    EXPECT_EQ(pill.dot(), Dot::grey);
    pill.isSample = false;
    pill.isStale = true;
    EXPECT_EQ(pill.dot(), Dot::grey);
  }
  PillContent alert = content(Status::boom);
  alert.isStale = true;
  EXPECT_EQ(alert.dot(), Dot::none);
}

TEST(PillContentMessage, IsWhatHasNoMatch) {
  for (const Status status : {Status::pickMatch, Status::loading, Status::unavailable}) {
    EXPECT_TRUE(content(status).isMessage());
  }
  for (const Status status : {Status::live, Status::inningsBreak, Status::notStarted,
                              Status::finished, Status::countdown, Status::boom}) {
    EXPECT_FALSE(content(status).isMessage());
  }
}

TEST(PillContentTexts, ComeInReadingOrder) {
  PillContent pill = content(Status::live);
  pill.isSample = pill.isStale = true;
  EXPECT_THAT(pill.drawnTexts(), ElementsAre("MI v CSK", "145/3", "15.2 ov", "SAMPLE", "STALE"));
  pill.teams.reset();
  pill.secondary.reset();
  EXPECT_THAT(pill.drawnTexts(), ElementsAre("145/3", "SAMPLE", "STALE"));
  EXPECT_THAT(content(Status::loading).drawnTexts(), ElementsAre("145/3"));
  EXPECT_THAT(content(Status::boom).drawnTexts(), ElementsAre("145/3", "15.2 ov"));
}

TEST(PillContentLabel, JoinsTheTextsAndSpeaksTheTagsAsWords) {
  PillContent pill = content(Status::live);
  EXPECT_EQ(pill.accessibilityLabel(), "MI v CSK, 145/3, 15.2 ov");
  pill.isSample = pill.isStale = true;
  pill.primary = "STALE";
  EXPECT_EQ(pill.accessibilityLabel(), "MI v CSK, STALE, 15.2 ov, sample, stale");
  EXPECT_EQ(PillContent(PillDisplay()).accessibilityLabel(), "Pick a match");
}

TEST(PillContentRuns, MarkTheBattingSide) {
  PillContent pill = content(Status::live);
  using Runs = std::vector<PillContent::TeamRun>;
  EXPECT_EQ(pill.teamRuns("MI v CSK"), (Runs{{"MI", true}, {" v ", false}, {"CSK", false}}));
  pill.battingTeam = "csk";
  EXPECT_EQ(pill.teamRuns("MI v CSK"), (Runs{{"MI", false}, {" v ", false}, {"CSK", true}}));
  pill.battingTeam = "RR";
  EXPECT_EQ(pill.teamRuns("MI v CSK"), (Runs{{"MI", false}, {" v ", false}, {"CSK", false}}));
}

TEST(PillContentRuns, AreNotTrimmed) {
  const PillContent pill = content(Status::live);
  using Runs = std::vector<PillContent::TeamRun>;
  EXPECT_EQ(pill.teamRuns("MI  v MI"), (Runs{{"MI ", false}, {" v ", false}, {"MI", true}}));
}

TEST(PillContentRuns, AreOneWithoutAPairOrABattingSide) {
  PillContent pill = content(Status::live);
  using Runs = std::vector<PillContent::TeamRun>;
  EXPECT_EQ(pill.teamRuns("MI v…"), (Runs{{"MI v…", false}}));
  EXPECT_EQ(pill.teamRuns("MI v B v C"), (Runs{{"MI v B v C", false}}));
  pill.battingTeam.reset();
  EXPECT_EQ(pill.teamRuns("MI v CSK"), (Runs{{"MI v CSK", false}}));
}

TEST(TrailingSpaces, GoFromTheEndOnly) {
  EXPECT_EQ(trimmingTrailingSpaces("  a b  "), "  a b");
  EXPECT_EQ(trimmingTrailingSpaces("a\t "), "a\t");
  EXPECT_EQ(trimmingTrailingSpaces("a\u00a0"), "a\u00a0");
  EXPECT_EQ(trimmingTrailingSpaces("   "), "");
  EXPECT_EQ(trimmingTrailingSpaces(""), "");
}

// Ten points for every character.
double tens(std::string_view text) {
  return 10 * static_cast<double>(text::characters(text).size());
}

TEST(PillContentTruncate, LeavesWhatFits) {
  EXPECT_EQ(PillContent::truncate("MI v CSK", 80, tens), "MI v CSK");
  EXPECT_EQ(PillContent::truncate("", 0, tens), "");
  EXPECT_EQ(PillContent::truncate("a ", 20, tens), "a ");
}

TEST(PillContentTruncate, DropsCharactersUntilTheRestFits) {
  EXPECT_EQ(PillContent::truncate("MI v CSK", 79.9, tens), "MI v C…");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 60, tens), "MI v…");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 50, tens), "MI v…");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 49, tens), "MI…");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 20, tens), "M…");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 10, tens), "…");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 9, tens), "");
  EXPECT_EQ(PillContent::truncate("MI v CSK", 0, tens), "");
  EXPECT_EQ(PillContent::truncate("MI v CSK", -5, tens), "");
}

TEST(PillContentTruncate, LeavesOutSpacesBeforeTheEllipsis) {
  EXPECT_EQ(PillContent::truncate("a    bcd", 60, tens), "a…");
  EXPECT_EQ(PillContent::truncate("    bcde", 40, tens), "…");
}

TEST(PillContentTruncate, CutsBetweenWhatAPersonSeesAsCharacters) {
  EXPECT_EQ(PillContent::truncate("🇮🇳🇦🇺🇳🇿🇿🇦", 30, tens), "🇮🇳🇦🇺…");
  EXPECT_EQ(PillContent::truncate("हिन्दी में", 30, tens), "हिन्दी…");
  EXPECT_EQ(
      PillContent::truncate("👨‍👩‍👧👨‍👩‍👧👨‍👩‍👧", 20, tens),
      "👨‍👩‍👧…");
}

TEST(PillContentTruncate, TakesTheLongestShorteningThatFits) {
  // Letters that join: "fi" is as wide as "f", so the longer start is not the wider one.
  const auto joining = [](std::string_view text) {
    double width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (i > 0 && text[i - 1] == 'f' && text[i] == 'i') continue;
      if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U) width += 10;
    }
    return width;
  };
  EXPECT_EQ(PillContent::truncate("officer", 40, joining), "offi…");
}

// Every shortening in turn, as the rule has it.
std::string plainlyTruncated(std::string_view text, double width) {
  if (tens(text) <= width) return std::string(text);
  std::vector<std::string_view> characters = text::characters(text);
  while (!characters.empty()) {
    text.remove_suffix(characters.back().size());
    characters.pop_back();
    if (characters.empty()) break;
    std::string candidate = std::string(trimmingTrailingSpaces(text)) + "…";
    if (tens(candidate) <= width) return candidate;
  }
  return tens("…") <= width ? "…" : "";
}

TEST(PillContentTruncate, GivesWhatTryingEveryShorteningGives) {
  const std::vector<std::string> pieces = {"a", " ", "  ", "é", "🇮🇳", "हि", "e\u0301", "w", "·"};
  std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same texts in every run.
  for (int round = 0; round < 500; ++round) {
    std::string text;
    const auto length = random() % 90;
    for (unsigned i = 0; i < length; ++i) text += pieces[random() % pieces.size()];
    const double width = static_cast<double>(random() % 700);
    const std::string result = PillContent::truncate(text, width, tens);
    EXPECT_EQ(result, plainlyTruncated(text, width)) << text << " in " << width;
    EXPECT_TRUE(result.empty() || tens(result) <= width);
  }
}

TEST(PillContentTruncate, MeasuresAHugeTextFewTimes) {
  int measured = 0;
  std::size_t bytes = 0;
  const auto counting = [&](std::string_view text) {
    ++measured;
    bytes += text.size();
    return 7.0 * static_cast<double>(text.size());
  };
  const std::string huge(1U << 20U, 'm');
  const std::string result = PillContent::truncate(huge, 200, counting);
  EXPECT_EQ(result, std::string(25, 'm') + "…");
  EXPECT_LT(measured, 60);
  EXPECT_LT(bytes, huge.size() + 5000);
}

}  // namespace
}  // namespace kestrow
