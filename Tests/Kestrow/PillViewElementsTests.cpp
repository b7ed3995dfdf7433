#include "Kestrow/PillView.hpp"
#include "Tests/Kestrow/PillViewFixture.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {
namespace {

using records::liveContent;

TEST_F(PillViewTest, DrawsTheScoreInItsPlaces) {
  layOut(180);
  const auto calls = foreground({0, 0, 180, 24});
  ASSERT_EQ(calls.size(), 4U);
  double x = (180 - liveWidth) * 0.5 + 6 + 7;
  EXPECT_EQ(described(std::get<Drawn::Text>(calls[0]).origin), described(Point{x, 12 - 6.875}));
  x += teamsWidth + 9;
  expectCall(calls[1], Drawn::Fill{Path::rect({83.5, 6, 1, 12}), white(0.15)});
  EXPECT_NEAR(x, 83.65, 1e-9);  // the nearest pixel's edge to it
  x += 1 + 9;
  expectCall(calls[2], Drawn::Text{line("145/3", PillRole::primary), {x, 12 - 8.125}});
  x += primaryWidth + 6;
  expectCall(calls[3], Drawn::Text{line("15.2 ov", PillRole::secondary), {x, 12 - 6.25}});
}

TEST_F(PillViewTest, ElementsGoByTheRectangleTheyAreIn) {
  view_.setLayout(PillLayout{PillLayout::Drawn{{10, 4, 180, 30}}});
  const auto calls = foreground({0, 0, 200, 40});
  const double x = 10 + (180 - liveWidth) * 0.5 + 13;
  EXPECT_EQ(described(std::get<Drawn::Text>(calls[0]).origin), described(Point{x, 19 - 6.875}));
  EXPECT_EQ(described(std::get<Drawn::Fill>(calls[1]).path),
            described(Path::rect({93.5, 13, 1, 12})));
  EXPECT_NEAR(x + teamsWidth + 9, 93.65, 1e-9);
}

AttributedText teamsLine(const std::vector<std::pair<std::string, double>>& runs) {
  AttributedText line;
  for (const auto& [text, alpha] : runs) {
    line.push_back({text, PillView::attributes(PillRole::teams, white(alpha), std::nullopt)});
  }
  return line;
}

TEST_F(PillViewTest, TheDividerIsOnWholePixelsAtEveryScale) {
  layOut(180);
  const auto divider = [&](const Rect& bounds, double scale) {
    return described(draw(bounds, scale)[3]);
  };
  const auto expected = [](const Rect& rect) {
    return described(Drawn::Call(Drawn::Fill{Path::rect(rect), white(0.15)}));
  };
  const Rect bounds{0, 0, 180, 24};
  EXPECT_EQ(divider(bounds, 1), expected({84, 6, 1, 12}));
  EXPECT_EQ(divider(bounds, 1.25), expected({84, 6.4, 0.8, 12}));
  EXPECT_EQ(divider(bounds, 1.5), expected({125 / 1.5, 6, 2 / 1.5, 12}));
  EXPECT_EQ(divider(bounds, 2), expected({83.5, 6, 1, 12}));
  // Never thinner than a pixel, and by the pixels of the window, wherever that is.
  EXPECT_EQ(divider(bounds, 0.4), expected({82.5, 5, 2.5, 12.5}));
  EXPECT_EQ(divider({0.3, 0.7, 180, 24}, 1), expected({83.3, 5.7, 1, 12}));
}

TEST_F(PillViewTest, TextsAreDrawnOnOneLine) {
  auto content = liveContent();
  content.teams = "MI V\tCSK";
  content.battingTeam = std::nullopt;
  content.primary = "145\n/3";
  view_.setContent(content);
  layOut(220);
  const auto calls = foreground({0, 0, 220, 24});
  EXPECT_EQ(std::get<Drawn::Text>(calls[0]).text, teamsLine({{"MI V CSK", 0.7}}));
  EXPECT_EQ(std::get<Drawn::Text>(calls[2]).text, line("145 /3", PillRole::primary));
}

TEST_F(PillViewTest, OfATextThatNoScreenHoldsOnlyTheStartIsMeasuredAndDrawn) {
  const std::string longest(2000, 'W');
  EXPECT_DOUBLE_EQ(view_.measure()(longest + 'W', PillRole::primary), 2000 * 6.5);
  EXPECT_DOUBLE_EQ(view_.measure()(longest.substr(1), PillRole::primary), 1999 * 6.5);
  auto content = liveContent();
  content.teams = longest + "WW";
  content.battingTeam = std::nullopt;
  content.primary = longest + "x";
  view_.setContent(content);
  layOut(1e6);
  const auto calls = foreground({0, 0, 1e6, 24});
  EXPECT_EQ(std::get<Drawn::Text>(calls[0]).text, teamsLine({{longest, 0.7}}));
  EXPECT_EQ(std::get<Drawn::Text>(calls[2]).text, line(longest, PillRole::primary));
}

TEST_F(PillViewTest, TheBattingSideShinesAndTheWordBetweenStepsBack) {
  layOut(180);
  EXPECT_EQ(std::get<Drawn::Text>(foreground({0, 0, 180, 24})[0]).text,
            teamsLine({{"MI", 1.0}, {" v ", 0.45}, {"CSK", 0.7}}));
}

TEST_F(PillViewTest, TheSecondSideShinesWhenItBats) {
  auto content = liveContent();
  content.battingTeam = "csk";
  view_.setContent(content);
  layOut(180);
  EXPECT_EQ(std::get<Drawn::Text>(foreground({0, 0, 180, 24})[0]).text,
            teamsLine({{"MI", 0.7}, {" v ", 0.45}, {"CSK", 1.0}}));
}

TEST_F(PillViewTest, WithoutABattingSideThePairingIsEven) {
  auto content = liveContent();
  content.battingTeam = std::nullopt;
  view_.setContent(content);
  layOut(180);
  EXPECT_EQ(std::get<Drawn::Text>(foreground({0, 0, 180, 24})[0]).text,
            teamsLine({{"MI v CSK", 0.7}}));
}

TEST_F(PillViewTest, TagsSitInBadges) {
  auto content = liveContent();
  content.isSample = true;
  content.isStale = true;
  view_.setContent(content);
  layOut(300);
  const auto calls = foreground({0, 0, 300, 24});
  ASSERT_EQ(calls.size(), 8U);
  // "SAMPLE" measures 6 x 5 and "STALE" 5 x 5; a badge is eight points wider.
  const double total = liveWidth + 5 + 38 + 5 + 33;
  double x = (300 - total) * 0.5 + liveWidth + 5;
  expectCall(calls[4], Drawn::Fill{Path::roundedRect({x, 5.5, 38, 13}, 6.5), white(0.15)});
  expectCall(calls[5], Drawn::Text{line("SAMPLE", PillRole::tag), {x + 4.25, 12 - 5.625}});
  x += 38 + 5;
  expectCall(calls[6], Drawn::Fill{Path::roundedRect({x, 5.5, 33, 13}, 6.5), white(0.15)});
  expectCall(calls[7], Drawn::Text{line("STALE", PillRole::tag), {x + 4.25, 12 - 5.625}});
}

TEST_F(PillViewTest, AFlashingScoreHasAHighlightBehindIt) {
  view_.setEmphasis(PillEmphasis::flash);
  layOut(180);
  const auto calls = foreground({0, 0, 180, 24});
  ASSERT_EQ(calls.size(), 5U);
  const double x = (180 - liveWidth) * 0.5 + 6 + 7 + teamsWidth + 9 + 1 + 9;
  expectCall(calls[2],
             Drawn::Fill{Path::roundedRect({x - 3, 3.5, primaryWidth + 6, 17}, 5), {amber, 0.22}});
  expectCall(calls[3], Drawn::Text{line("145/3", PillRole::primary), {x, 12 - 8.125}});
}

TEST_F(PillViewTest, AnExpandedAlertHasItsHeadlineAboveAndItsDetailBelowTheMiddle) {
  view_.setContent(PillContent::boom("WICKET!", "R Sharma (MI)"));
  view_.setEmphasis(PillEmphasis::expanded);
  layOut(120, 40);
  const auto calls = foreground({0, 0, 120, 40});
  ASSERT_EQ(calls.size(), 2U);
  expectCall(calls[0], Drawn::Text{line("WICKET!", PillRole::headline), {(120 - 7 * 8.0) / 2, 21}});
  expectCall(calls[1], Drawn::Text{line("R Sharma (MI)", PillRole::detail),
                                   {(120 - 13 * 5.5) / 2, 20 - 13.75 - 1}});
}

TEST_F(PillViewTest, AnAlertThatIsNotExpandedStaysInOneRow) {
  view_.setContent(PillContent::boom("SIX!", "MI"));
  layOut(100);
  const auto calls = foreground({0, 0, 100, 24});
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(std::get<Drawn::Text>(calls[0]).origin.y, 12 - 9.375);
  EXPECT_EQ(std::get<Drawn::Text>(calls[1]).origin.y, 12 - 6.875);
}

TEST_F(PillViewTest, AMessageEndsInTheHintThatThereIsSomethingToPick) {
  PillContent content;
  content.primary = "Pick a match";
  view_.setContent(content);
  layOut(140);
  const auto calls = foreground({0, 0, 140, 24});
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(std::get<Drawn::Text>(calls[0]).text, line("Pick a match", PillRole::message));
  EXPECT_EQ(std::get<Drawn::Text>(calls[1]).text, line("▸", PillRole::hint));
}

TEST_F(PillViewTest, TheWingsShareTheContentAndTheHousingStaysEmpty) {
  view_.setLayout(
      PillLayout{PillLayout::Notch{{0, 0, 100, 32}, {280, 0, 110, 32}, {100, 0, 180, 32}}});
  const auto calls = foreground({0, 0, 390, 32});
  ASSERT_EQ(calls.size(), 3U);
  // The left wing is pushed against the housing, the right one starts at its padding.
  EXPECT_EQ(described(std::get<Drawn::Text>(calls[0]).origin),
            described(Point{100 - 12 - teamsWidth, 16 - 6.875}));
  EXPECT_EQ(described(std::get<Drawn::Text>(calls[1]).origin), described(Point{292, 16 - 8.125}));
  EXPECT_EQ(described(std::get<Drawn::Text>(calls[2]).origin),
            described(Point{292 + primaryWidth + 6, 16 - 6.25}));
  EXPECT_EQ(described(view_.dot()->frame),
            described(Rect{100 - 12 - teamsWidth - 7 - 6, 13, 6, 6}));
}

}  // namespace
}  // namespace kestrow
