#include "KestrowCore/PillComposer.hpp"
#include "KestrowCore/Text.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Gap = PillComposer::Gap;
using Item = PillComposer::Item;
using Items = std::vector<Item>;
using Part = PillComposer::Part;
using Row = PillElement::Row;
using records::liveContent;
using Status = PillContent::Status;
using Text = PillElement::Text;
using Dot = PillElement::Dot;
using Divider = PillElement::Divider;
using Elements = std::vector<PillElement>;

// Every role has its own width for a character, so that a measure with the wrong role shows.
double measure(std::string_view text, PillRole role) {
  constexpr std::array perRole{8.0, 10.0, 7.0, 5.3, 9.0, 6.0, 12.0, 11.0};
  return perRole.at(static_cast<std::size_t>(role)) *
         static_cast<double>(text::characters(text).size());
}

PillContent message(Status status, std::string primary) {
  PillContent content;
  content.status = status;
  content.primary = std::move(primary);
  return content;
}

Items itemsOf(const PillContent& content, Part part) {
  return PillComposer::items(content, part, content.teamsText(), content.secondary);
}

Elements arranged(const PillContent& content, Part part, double width, bool expanded = false) {
  return PillComposer::arrange(content, part, width, expanded, measure);
}

TEST(PillItems, OfALiveMatchAreTheTeamsTheDividerAndTheValues) {
  EXPECT_EQ(
      itemsOf(liveContent(), Part::drawn),
      (Items{Dot{}, Gap{7}, Text{PillRole::teams, "MI v CSK"}, Gap{9}, Divider{}, Gap{9},
             Text{PillRole::primary, "145/3"}, Gap{6}, Text{PillRole::secondary, "15.2 ov"}}));
}

TEST(PillItems, OfTheWingsAreTheTwoHalves) {
  EXPECT_EQ(itemsOf(liveContent(), Part::leftWing),
            (Items{Dot{}, Gap{7}, Text{PillRole::teams, "MI v CSK"}}));
  EXPECT_EQ(
      itemsOf(liveContent(), Part::rightWing),
      (Items{Text{PillRole::primary, "145/3"}, Gap{6}, Text{PillRole::secondary, "15.2 ov"}}));
}

TEST(PillItems, HaveOneGapAndNoDividerWithoutTeams) {
  PillContent content = liveContent();
  content.teams.reset();
  content.secondary.reset();
  EXPECT_EQ(itemsOf(content, Part::drawn),
            (Items{Dot{}, Gap{9}, Text{PillRole::primary, "145/3"}}));
  EXPECT_EQ(itemsOf(content, Part::leftWing), (Items{Dot{}}));
  EXPECT_EQ(itemsOf(content, Part::rightWing), (Items{Text{PillRole::primary, "145/3"}}));
}

TEST(PillItems, TakeTheGivenTextsInPlaceOfTheContents) {
  EXPECT_EQ(PillComposer::items(liveContent(), Part::drawn, "MI…", std::nullopt),
            (Items{Dot{}, Gap{7}, Text{PillRole::teams, "MI…"}, Gap{9}, Divider{}, Gap{9},
                   Text{PillRole::primary, "145/3"}}));
}

TEST(PillItems, EndWithTheTags) {
  PillContent content = liveContent();
  content.isSample = content.isStale = true;
  EXPECT_EQ(itemsOf(content, Part::rightWing),
            (Items{Text{PillRole::primary, "145/3"}, Gap{6}, Text{PillRole::secondary, "15.2 ov"},
                   Gap{5}, Text{PillRole::tag, "SAMPLE"}, Gap{5}, Text{PillRole::tag, "STALE"}}));
}

TEST(PillItems, OfPickMatchEndWithTheHint) {
  const PillContent pick = message(Status::pickMatch, "Pick a match");
  EXPECT_EQ(itemsOf(pick, Part::drawn),
            (Items{Dot{}, Gap{7}, Text{PillRole::message, "Pick a match"}, Gap{6},
                   Text{PillRole::hint, "▸"}}));
  EXPECT_EQ(itemsOf(pick, Part::leftWing),
            (Items{Dot{}, Gap{7}, Text{PillRole::message, "Pick a match"}}));
  EXPECT_EQ(itemsOf(pick, Part::rightWing), (Items{Text{PillRole::hint, "▸"}}));
}

TEST(PillItems, OfOtherMessagesHaveNothingOnTheRight) {
  for (const Status status : {Status::loading, Status::unavailable}) {
    const PillContent content = message(status, "Loading…");
    const Items dotAndText{Dot{}, Gap{7}, Text{PillRole::message, "Loading…"}};
    EXPECT_EQ(itemsOf(content, Part::drawn), dotAndText);
    EXPECT_EQ(itemsOf(content, Part::leftWing), dotAndText);
    EXPECT_THAT(itemsOf(content, Part::rightWing), IsEmpty());
  }
}

TEST(PillItems, OfAnAlertAreHeadlineAndDetail) {
  PillContent alert = PillContent::boom("SIX!", "Sharma");
  EXPECT_EQ(itemsOf(alert, Part::drawn),
            (Items{Text{PillRole::headline, "SIX!"}, Gap{9}, Text{PillRole::detail, "Sharma"}}));
  EXPECT_EQ(itemsOf(alert, Part::leftWing), (Items{Text{PillRole::headline, "SIX!"}}));
  EXPECT_EQ(itemsOf(alert, Part::rightWing), (Items{Text{PillRole::detail, "Sharma"}}));
  alert.secondary.reset();
  EXPECT_EQ(itemsOf(alert, Part::drawn), (Items{Text{PillRole::headline, "SIX!"}}));
  EXPECT_EQ(itemsOf(alert, Part::leftWing), (Items{Text{PillRole::headline, "SIX!"}}));
  EXPECT_THAT(itemsOf(alert, Part::rightWing), IsEmpty());
}

TEST(PillWidth, SumsTheItems) {
  EXPECT_EQ(PillComposer::width({}, measure), 0);
  // 6 + 7 + 64 + 9 + 1 + 9 + 50 + 6 + 49
  EXPECT_EQ(PillComposer::width(itemsOf(liveContent(), Part::drawn), measure), 201);
}

TEST(PillWidth, RoundsOnlyTagsUpAndPadsThem) {
  // Six characters of 5.3 points are 31.8: 32 and the padding.
  EXPECT_EQ(PillComposer::width({Text{PillRole::tag, "SAMPLE"}}, measure), 40);
  EXPECT_NEAR(PillComposer::width({Text{PillRole::primary, "SAMPLE"}},
                                  [](std::string_view, PillRole) { return 31.8; }),
              31.8, 1e-12);
}

TEST(PillContentWidth, IsRoundedUpAndWithoutPadding) {
  EXPECT_EQ(PillComposer::contentWidth(liveContent(), Part::drawn, false, measure), 201);
  EXPECT_EQ(PillComposer::contentWidth(liveContent(), Part::leftWing, false, measure), 77);
  EXPECT_EQ(PillComposer::contentWidth(liveContent(), Part::rightWing, false, measure), 105);
  const auto third = [](std::string_view, PillRole) { return 10.3; };
  EXPECT_EQ(PillComposer::contentWidth(liveContent(), Part::leftWing, false, third), 24);
  EXPECT_EQ(
      PillComposer::contentWidth(message(Status::loading, "x"), Part::rightWing, false, measure),
      0);
}

TEST(PillContentWidth, OfAnExpandedAlertIsTheWiderRow) {
  const PillContent alert = PillContent::boom("SIX!", "Sharma");
  EXPECT_EQ(PillComposer::contentWidth(alert, Part::drawn, true, measure), 66);
  EXPECT_EQ(
      PillComposer::contentWidth(PillContent::boom("WICKET!", "MI"), Part::drawn, true, measure),
      84);
  // Side by side otherwise.
  EXPECT_EQ(PillComposer::contentWidth(alert, Part::drawn, false, measure), 48 + 9 + 66);
  EXPECT_EQ(PillComposer::contentWidth(alert, Part::leftWing, true, measure), 48);
  EXPECT_EQ(PillComposer::contentWidth(liveContent(), Part::drawn, true, measure), 201);
  PillContent bare = alert;
  bare.secondary.reset();
  EXPECT_EQ(PillComposer::contentWidth(bare, Part::drawn, true, measure), 48);
  EXPECT_EQ(PillComposer::contentWidth(alert, Part::drawn, true,
                                       [](std::string_view, PillRole) { return 10.3; }),
            11);
}

TEST(PillArrange, CentresTheDrawnPill) {
  EXPECT_EQ(arranged(liveContent(), Part::drawn, 241),
            (Elements{{Dot{}, 20, 6},
                      {Text{PillRole::teams, "MI v CSK"}, 33, 64},
                      {Divider{}, 106, 1},
                      {Text{PillRole::primary, "145/3"}, 116, 50},
                      {Text{PillRole::secondary, "15.2 ov"}, 172, 49}}));
}

TEST(PillArrange, PushesTheLeftWingAgainstTheHousingAndStartsTheRightOneBesideIt) {
  EXPECT_EQ(arranged(liveContent(), Part::leftWing, 200),
            (Elements{{Dot{}, 111, 6}, {Text{PillRole::teams, "MI v CSK"}, 124, 64}}));
  EXPECT_EQ(arranged(liveContent(), Part::rightWing, 200),
            (Elements{{Text{PillRole::primary, "145/3"}, 12, 50},
                      {Text{PillRole::secondary, "15.2 ov"}, 68, 49}}));
}

TEST(PillArrange, GivesTheTagsTheirBadges) {
  PillContent content = liveContent();
  content.isSample = content.isStale = true;
  content.secondary.reset();
  EXPECT_EQ(arranged(content, Part::rightWing, 200),
            (Elements{{Text{PillRole::primary, "145/3"}, 12, 50},
                      {Text{PillRole::tag, "SAMPLE"}, 67, 40},
                      {Text{PillRole::tag, "STALE"}, 112, 35}}));
}

TEST(PillArrange, ShortensNothingThatJustFits) {
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 225)),
              ElementsAre("MI v CSK", "145/3", "15.2 ov"));
}

TEST(PillArrange, ShortensTheTeamsFirst) {
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 224)),
              ElementsAre("MI v C…", "145/3", "15.2 ov"));
  // 24 points for the teams hold three characters.
  const Elements elements = arranged(liveContent(), Part::drawn, 225 - 40);
  EXPECT_THAT(PillComposer::readingTexts(elements), ElementsAre("MI…", "145/3", "15.2 ov"));
  EXPECT_EQ(elements.front().x, 12);
}

TEST(PillArrange, DropsTeamsAndDividerWhenOnlyTheEllipsisWouldStay) {
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 225 - 48)),
              ElementsAre("M…", "145/3", "15.2 ov"));
  const Elements elements = arranged(liveContent(), Part::drawn, 225 - 49);
  EXPECT_EQ(elements, (Elements{{Dot{}, 28, 6},
                                {Text{PillRole::primary, "145/3"}, 43, 50},
                                {Text{PillRole::secondary, "15.2 ov"}, 99, 49}}));
}

TEST(PillArrange, ShortensTheSecondaryWhenTheTeamsAreNotEnough) {
  // Without teams 120 points are needed.
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 24 + 120)),
              ElementsAre("145/3", "15.2 ov"));
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 24 + 119)),
              ElementsAre("145/3", "15.2…"));
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 24 + 85)),
              ElementsAre("145/3", "1…"));
  EXPECT_THAT(PillComposer::readingTexts(arranged(liveContent(), Part::drawn, 24 + 84)),
              ElementsAre("145/3"));
}

TEST(PillArrange, LetsTheScoreAndTheTagsRunPastTheEdge) {
  PillContent content = liveContent();
  content.isStale = true;
  EXPECT_EQ(arranged(content, Part::drawn, 40),
            (Elements{{Dot{}, 12, 6},
                      {Text{PillRole::primary, "145/3"}, 27, 50},
                      {Text{PillRole::tag, "STALE"}, 82, 35}}));
  EXPECT_EQ(arranged(content, Part::leftWing, 0), (Elements{{Dot{}, 12, 6}}));
}

TEST(PillArrange, ShortensTheWingsOnTheirOwn) {
  EXPECT_EQ(arranged(liveContent(), Part::leftWing, 24 + 77 - 1),
            (Elements{{Dot{}, 19, 6}, {Text{PillRole::teams, "MI v C…"}, 32, 56}}));
  EXPECT_EQ(arranged(liveContent(), Part::rightWing, 24 + 105 - 1),
            (Elements{{Text{PillRole::primary, "145/3"}, 12, 50},
                      {Text{PillRole::secondary, "15.2…"}, 68, 35}}));
}

TEST(PillArrange, LeavesMessagesWhole) {
  EXPECT_EQ(arranged(message(Status::pickMatch, "Pick a match"), Part::drawn, 100),
            (Elements{{Dot{}, 12, 6},
                      {Text{PillRole::message, "Pick a match"}, 25, 108},
                      {Text{PillRole::hint, "▸"}, 139, 6}}));
  EXPECT_THAT(arranged(message(Status::loading, "Loading…"), Part::rightWing, 24), IsEmpty());
}

TEST(PillArrange, PutsAFlatAlertOnOneRow) {
  EXPECT_EQ(arranged(PillContent::boom("SIX!", "Sharma"), Part::drawn, 147),
            (Elements{{Text{PillRole::headline, "SIX!"}, 12, 48},
                      {Text{PillRole::detail, "Sharma"}, 69, 66}}));
  // The wings of a notched screen have no rows to expand into.
  EXPECT_EQ(arranged(PillContent::boom("SIX!", "Sharma"), Part::rightWing, 147, true),
            (Elements{{Text{PillRole::detail, "Sharma"}, 12, 66}}));
}

TEST(PillArrange, PutsAnExpandedAlertOnTwoCentredRows) {
  EXPECT_EQ(arranged(PillContent::boom("SIX!", "Sharma"), Part::drawn, 200, true),
            (Elements{{Text{PillRole::headline, "SIX!"}, 76, 48, Row::upper},
                      {Text{PillRole::detail, "Sharma"}, 67, 66, Row::lower}}));
}

TEST(PillArrange, LeavesOutTheEmptyRowsOfAnExpandedAlert) {
  PillContent alert = PillContent::boom("SIX!", "");
  const Elements onlyHeadline{{Text{PillRole::headline, "SIX!"}, 76, 48, Row::upper}};
  EXPECT_EQ(arranged(alert, Part::drawn, 200, true), onlyHeadline);
  alert.secondary.reset();
  EXPECT_EQ(arranged(alert, Part::drawn, 200, true), onlyHeadline);
  EXPECT_THAT(arranged(PillContent::boom("", ""), Part::drawn, 200, true), IsEmpty());
  EXPECT_THAT(arranged(PillContent::boom("SIX!", "x"), Part::drawn, 24, true), IsEmpty());
}

TEST(PillArrange, ShortensTheRowsOfAnExpandedAlertEachForItself) {
  EXPECT_EQ(arranged(PillContent::boom("SIX!", "Rohit Sharma"), Part::drawn, 24 + 66, true),
            (Elements{{Text{PillRole::headline, "SIX!"}, 21, 48, Row::upper},
                      {Text{PillRole::detail, "Rohit…"}, 12, 66, Row::lower}}));
}

TEST(PillReading, LeavesTheHintOut) {
  EXPECT_THAT(PillComposer::readingTexts(
                  arranged(message(Status::pickMatch, "Pick a match"), Part::drawn, 300)),
              ElementsAre("Pick a match"));
  EXPECT_THAT(PillComposer::readingTexts({}), IsEmpty());
}

TEST(PillElements, KnowTheirTextAndRole) {
  const PillElement text{Text{PillRole::hint, "▸"}, 0, 6};
  EXPECT_EQ(text.text(), "▸");
  EXPECT_EQ(text.role(), PillRole::hint);
  const PillElement dot{Dot{}, 0, 6};
  EXPECT_EQ(dot.text(), std::nullopt);
  EXPECT_EQ(dot.role(), std::nullopt);
}

TEST(PillArrange, NeverLetsElementsOverlap) {
  std::mt19937 random(11);  // NOLINT(cert-msc51-cpp): the same contents in every run.
  const std::vector<std::string> words = {"", "MI", "Mumbai Indians", "🇮🇳", "हिन्दी", "145/3", " "};
  const auto word = [&] { return words[random() % words.size()]; };
  for (int round = 0; round < 3000; ++round) {
    PillContent content;
    content.status = static_cast<Status>(random() % 9);
    if (random() % 4 != 0) content.teams = word() + " v " + word();
    content.primary = word();
    if (random() % 3 != 0) content.secondary = word();
    content.isSample = random() % 2 == 0;
    content.isStale = random() % 2 == 0;
    const auto part = static_cast<Part>(random() % 3);
    const double width = static_cast<double>(random() % 400);
    const Elements elements = arranged(content, part, width, random() % 2 == 0);
    double edge = 0;
    Row row = Row::middle;
    for (const PillElement& element : elements) {
      if (element.row == row) {
        EXPECT_GE(element.x, edge);
      }
      row = element.row;
      edge = element.x + element.width;
    }
    // What may be shortened fits as soon as the rest does.
    const Items fixed = PillComposer::items(content, part, std::nullopt, std::nullopt);
    const bool isFlat = elements.empty() || elements.front().row == Row::middle;
    if (isFlat && content.status != Status::boom &&
        PillComposer::width(fixed, measure) <= std::max(width - 24, 0.0)) {
      EXPECT_LE(edge, std::max(width, 24.0) - 12 + 1e-9);
    }
  }
}

}  // namespace
}  // namespace kestrow
