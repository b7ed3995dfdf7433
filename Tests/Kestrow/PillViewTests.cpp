#include "Kestrow/PillView.hpp"
#include "KestrowCore/Text.hpp"
#include "Tests/Kestrow/PillViewFixture.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

namespace kestrow {
namespace {

using records::liveContent;

// Left side, round corners, right side; the top stays open.
Path outline(double left, double bottom, double right, double top, double radius) {
  return {{Path::MoveTo{{left, top}}, Path::LineTo{{left, bottom + radius}},
           Path::Arc{{left + radius, bottom + radius}, radius, 180, 270, false},
           Path::LineTo{{right - radius, bottom}},
           Path::Arc{{right - radius, bottom + radius}, radius, 270, 360, false},
           Path::LineTo{{right, top}}}};
}

Path closed(Path path) {
  path.steps.emplace_back(Path::Close{});
  return path;
}

// Fonts and colours.

TEST(PillView, EveryRoleHasItsFontAndKerning) {
  const std::vector<std::tuple<PillRole, Font, double>> expected{
      {PillRole::teams, {11, FontWeight::semibold, false}, 0.6},
      {PillRole::primary, {13, FontWeight::bold, true}, 0},
      {PillRole::secondary, {10, FontWeight::medium, false}, 0},
      {PillRole::tag, {9, FontWeight::bold, false}, 0.5},
      {PillRole::message, {12, FontWeight::medium, false}, 0},
      {PillRole::hint, {10, FontWeight::semibold, false}, 0},
      {PillRole::headline, {15, FontWeight::heavy, false}, 0.5},
      {PillRole::detail, {11, FontWeight::semibold, false}, 0}};
  for (const auto& [role, font, kerning] : expected) {
    const auto attributes = PillView::attributes(role, white(0.3), std::nullopt);
    EXPECT_EQ(attributes, (TextAttributes{font, white(0.3), kerning, std::nullopt}))
        << static_cast<int>(role);
  }
}

TEST(PillView, AGlowIsABlurOfFourPoints) {
  const auto attributes = PillView::attributes(PillRole::primary, white(1), Color{amber, 0.6});
  EXPECT_EQ(attributes.glow, (Glow{{amber, 0.6}, 4}));
}

struct ExpectedStyle {
  PillRole role;
  Color color;
  std::optional<Color> glow;
  bool isFlashing = false;
};

void expectStyles(const PillView& view, const std::vector<ExpectedStyle>& expected) {
  for (const auto& [role, color, glow, isFlashing] : expected) {
    EXPECT_EQ(view.style(role),
              (PillView::Style{PillView::attributes(role, color, glow), isFlashing}))
        << static_cast<int>(role);
  }
}

TEST_F(PillViewTest, EveryRoleHasItsColourAndGlow) {
  expectStyles(view_, {{PillRole::teams, white(0.7), {}},
                       {PillRole::primary, {amber, 1}, Color{amber, 0.6}},
                       {PillRole::secondary, white(0.55), {}},
                       {PillRole::tag, white(0.85), {}},
                       {PillRole::message, white(0.8), {}},
                       {PillRole::hint, {amber, 0.8}, {}},
                       {PillRole::headline, {floodlight, 1}, Color{floodlight, 0.45}},
                       {PillRole::detail, white(1), {}}});
}

TEST_F(PillViewTest, AnOldScoreIsHalfAsStrongAndNothingElseIs) {
  auto content = liveContent();
  content.isStale = true;
  view_.setContent(content);
  expectStyles(view_, {{PillRole::teams, white(0.7), {}},
                       {PillRole::primary, {amber, 0.5}, Color{amber, 0.6 * 0.5}},
                       {PillRole::secondary, white(0.55 * 0.5), {}},
                       {PillRole::tag, white(0.85), {}},
                       {PillRole::message, white(0.8), {}},
                       {PillRole::hint, {amber, 0.8}, {}},
                       {PillRole::headline, {floodlight, 1}, Color{floodlight, 0.45}},
                       {PillRole::detail, white(1), {}}});
}

TEST_F(PillViewTest, AFlashingScoreIsInFloodlightAtFullStrengthHoweverOldItIs) {
  view_.setEmphasis(PillEmphasis::flash);
  expectStyles(view_, {{PillRole::primary, {floodlight, 1}, Color{amber, 0.9}, true},
                       {PillRole::secondary, white(0.55), {}},
                       {PillRole::headline, {floodlight, 1}, Color{floodlight, 0.45}}});
  auto content = liveContent();
  content.isStale = true;
  view_.setContent(content);
  expectStyles(view_, {{PillRole::primary, {floodlight, 1}, Color{amber, 0.9}, true}});
}

TEST_F(PillViewTest, MeasuresInTheFontAndKerningOfTheRole) {
  EXPECT_DOUBLE_EQ(view_.measure()("MI v CSK", PillRole::teams), 8 * 6.1);
  EXPECT_DOUBLE_EQ(view_.measure()("145/3", PillRole::primary), 32.5);
  EXPECT_DOUBLE_EQ(view_.measure()("STALE", PillRole::tag), 25);
}

// The background.

TEST_F(PillViewTest, WithoutALayoutOnlyTheEmptyCapsuleIsDrawn) {
  const auto calls = draw({0, 0, 100, 24}, 1);
  ASSERT_EQ(calls.size(), 2U);
  expectCall(calls[0], Drawn::Gradient{closed(outline(0, 0, 100, 24, 13)),
                                       {{14 / 255.0, 18 / 255.0, 32 / 255.0}, 1},
                                       {{0, 0, 0}, 1},
                                       -90});
  expectCall(calls[1], Drawn::Stroke{outline(0.5, 0.5, 99.5, 23.5, 12.5), white(0.1), 1});
  EXPECT_EQ(view_.dot(), std::nullopt);
}

TEST_F(PillViewTest, TheEdgeIsOneDevicePixelWide) {
  expectCall(draw({0, 0, 100, 24}, 2)[1],
             Drawn::Stroke{outline(0.25, 0.25, 99.75, 23.75, 12.75), white(0.1), 0.5});
  expectCall(draw({0, 0, 100, 24}, 1.25)[1],
             Drawn::Stroke{outline(0.4, 0.4, 99.6, 23.6, 12.6), white(0.1), 0.8});
}

TEST_F(PillViewTest, WithoutAScreenItIsDrawnAsOnAFineOne) {
  expectCall(draw({0, 0, 100, 24}, 0)[1], draw({0, 0, 100, 24}, 2)[1]);
}

TEST_F(PillViewTest, TheWingsHaveSmallerCorners) {
  view_.setLayout(
      PillLayout{PillLayout::Notch{{0, 0, 100, 32}, {280, 0, 90, 32}, {100, 0, 180, 32}}});
  const auto calls = draw({0, 0, 370, 32}, 1);
  EXPECT_EQ(described(std::get<Drawn::Gradient>(calls[0]).path),
            described(closed(outline(0, 0, 370, 32, 9))));
  EXPECT_EQ(described(std::get<Drawn::Stroke>(calls[1]).path),
            described(outline(0.5, 0.5, 369.5, 31.5, 8.5)));
}

TEST_F(PillViewTest, AShapeSmallerThanItsCornersStaysInsideItself) {
  EXPECT_EQ(described(std::get<Drawn::Gradient>(draw({0, 0, 20, 8}, 1)[0]).path),
            described(closed(outline(0, 0, 20, 8, 8))));
  EXPECT_EQ(described(std::get<Drawn::Gradient>(draw({0, 0, 10, 24}, 1)[0]).path),
            described(closed(outline(0, 0, 10, 24, 5))));
}

TEST_F(PillViewTest, AThemeHasAStripAlongTheBottomInsideTheShape) {
  view_.setTheme(TeamTheme::named("csk"));
  const auto calls = draw({0, 0, 100, 24});
  ASSERT_EQ(calls.size(), 5U);
  EXPECT_TRUE(std::holds_alternative<Drawn::Gradient>(calls[0]));
  expectCall(calls[1], Drawn::PushClip{closed(outline(0, 0, 100, 24, 13))});
  expectCall(calls[2], Drawn::Fill{Path::rect({0, 0, 100, 2}), {RGB(0xF9CD05), 1}});
  expectCall(calls[3], Drawn::PopClip{});
  EXPECT_TRUE(std::holds_alternative<Drawn::Stroke>(calls[4]));
}

TEST_F(PillViewTest, AnExpandedAlertHasARedStripWhateverTheTheme) {
  view_.setEmphasis(PillEmphasis::expanded);
  for (const auto* theme : {"default", "csk"}) {
    view_.setTheme(TeamTheme::named(theme));
    expectCall(draw({0, 0, 100, 40})[2], Drawn::Fill{Path::rect({0, 0, 100, 2}), {ball, 1}});
  }
}

TEST_F(PillViewTest, AFlashLeavesTheStripAsItIs) {
  view_.setEmphasis(PillEmphasis::flash);
  EXPECT_EQ(draw({0, 0, 100, 24}).size(), 2U);
}

TEST_F(PillViewTest, TheStripIsOnWholePixelsAtEveryScale) {
  view_.setTheme(TeamTheme::named("csk"));
  const auto strip = [&](double scale) { return described(draw({0, 0, 100, 24}, scale)[2]); };
  const auto expected = [](double height) {
    return described(Drawn::Call(Drawn::Fill{Path::rect({0, 0, 100, height}), {RGB(0xF9CD05), 1}}));
  };
  EXPECT_EQ(strip(1), expected(2));
  EXPECT_EQ(strip(1.25), expected(2.4));
  EXPECT_EQ(strip(1.5), expected(2));
  EXPECT_EQ(strip(2), expected(2));
}

// What the surface hears.

TEST_F(PillViewTest, EveryChangeAsksForANewPictureAndPlacesTheDot) {
  const auto record = std::make_shared<PillSurfaceRecord>();
  RecordingPillSurface surface(record);
  view_.setSurface(&surface);
  EXPECT_EQ(record->dot, std::nullopt);
  layOut(180);
  EXPECT_EQ(record->redraws, 1);
  EXPECT_TRUE(record->dot);
  view_.setTheme(TeamTheme::named("csk"));
  EXPECT_EQ(record->redraws, 2);
  EXPECT_EQ(record->dot->shadowColor, (Color{RGB(0xF9CD05), 1}));
  view_.setEmphasis(PillEmphasis::flash);
  EXPECT_EQ(record->redraws, 3);
  view_.setContent(PillContent::boom("SIX!", "MI"));
  EXPECT_EQ(record->redraws, 4);
  EXPECT_EQ(record->dot, std::nullopt);
  view_.setSurface(nullptr);
  view_.setContent(liveContent());
  EXPECT_EQ(record->redraws, 4);
}

TEST_F(PillViewTest, ANewLabelIsToldAndTheSameOneIsNot) {
  const auto record = std::make_shared<PillSurfaceRecord>();
  RecordingPillSurface surface(record);
  view_.setSurface(&surface);
  EXPECT_EQ(view_.accessibilityLabel(), "MI v CSK, 145/3, 15.2 ov");
  auto content = liveContent();
  content.battingTeam = "CSK";
  view_.setContent(content);
  EXPECT_EQ(record->labelChanges, 0);
  content.isStale = true;
  view_.setContent(content);
  EXPECT_EQ(record->labelChanges, 1);
  EXPECT_EQ(view_.accessibilityLabel(), "MI v CSK, 145/3, 15.2 ov, stale");
}

TEST_F(PillViewTest, AssistiveTechnologyIsSparedATextThatNobodyHearsToItsEnd) {
  auto content = liveContent();
  content.teams = std::string(text::longestRead + 1, 'w');
  view_.setContent(content);
  EXPECT_EQ(view_.accessibilityLabel(), std::string(text::longestRead, 'W') + "…");
}

TEST_F(PillViewTest, AClickDoesWhatItIsToldTo) {
  view_.click();
  int clicks = 0;
  view_.onClick = [&] { ++clicks; };
  view_.click();
  EXPECT_EQ(clicks, 1);
}

TEST_F(PillViewTest, HoldsWhatItWasGiven) {
  EXPECT_EQ(view_.content(), liveContent());
  EXPECT_EQ(view_.theme(), TeamTheme::standard());
  EXPECT_EQ(view_.emphasis(), PillEmphasis::none);
  EXPECT_EQ(view_.layout(), std::nullopt);
}

}  // namespace
}  // namespace kestrow
