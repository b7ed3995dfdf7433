#include "Kestrow/PillView.hpp"
#include "KestrowCore/Text.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/RecordingCanvas.hpp"
#include "Tests/Support/Records.hpp"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using records::liveContent;
using Status = PillContent::Status;

Color white(double alpha) {
  return {{1, 1, 1}, alpha};
}
constexpr RGB amber{1, 182 / 255.0, 39 / 255.0};
constexpr RGB floodlight{1, 210 / 255.0, 63 / 255.0};
constexpr RGB ball{228 / 255.0, 34 / 255.0, 63 / 255.0};
constexpr RGB grey{0.55, 0.55, 0.55};

PillContent withStatus(Status status) {
  PillContent content = liveContent();
  content.status = status;
  return content;
}

// The widths of the live content: 8 x 6.1, 5 x 6.5 and 7 x 5.
constexpr double teamsWidth = 48.8;
constexpr double primaryWidth = 32.5;
constexpr double secondaryWidth = 35;
constexpr double liveWidth = 6 + 7 + teamsWidth + 9 + 1 + 9 + primaryWidth + 6 + secondaryWidth;

class PillViewTest : public testing::Test {
 protected:
  std::vector<Drawn::Call> draw(const Rect& bounds, double scale = 2) {
    RecordingCanvas canvas;
    view_.draw(canvas, bounds, scale);
    return canvas.calls;
  }

  // What is drawn after the background's edge.
  std::vector<Drawn::Call> foreground(const Rect& bounds) {
    auto calls = draw(bounds);
    for (std::size_t i = 0; i < calls.size(); ++i) {
      if (!std::holds_alternative<Drawn::Stroke>(calls[i])) continue;
      calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      return calls;
    }
    return {};
  }

  void layOut(double width, double height = 24) {
    view_.setLayout(PillLayout{PillLayout::Drawn{{0, 0, width, height}}});
  }

  AttributedText line(const std::string& text, PillRole role) const {
    return {{text, view_.style(role).attributes}};
  }

  static void expectCall(const Drawn::Call& call, const Drawn::Call& expected) {
    EXPECT_EQ(described(call), described(expected));
  }

  FakeDesktop desktop_;
  PillView view_{liveContent(), desktop_};
};

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

// The elements.

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

// The dot.

DotAppearance expectedDot(const RGB& color, double radius, double opacity, bool pulses) {
  return {.frame = {},
          .cornerRadius = 3,
          .color = {color, 1},
          .shadowColor = {color, 1},
          .shadowRadius = radius,
          .shadowOpacity = opacity,
          .pulses = pulses};
}

TEST_F(PillViewTest, TheDotTellsTheState) {
  const auto liveDot = expectedDot(ball, 5, 1, true);
  const auto amberDot = expectedDot(amber, 3, 0.6, false);
  const auto greyDot = expectedDot(grey, 3, 0, false);
  const std::vector<std::pair<Status, DotAppearance>> expected{
      {Status::live, liveDot},        {Status::inningsBreak, amberDot},
      {Status::notStarted, amberDot}, {Status::countdown, amberDot},
      {Status::finished, greyDot},    {Status::pickMatch, greyDot},
      {Status::loading, greyDot},     {Status::unavailable, greyDot}};
  layOut(300);
  for (const auto& [status, appearance] : expected) {
    view_.setContent(withStatus(status));
    auto dot = view_.dot();
    ASSERT_TRUE(dot) << static_cast<int>(status);
    EXPECT_EQ(dot->frame.width, 6);
    EXPECT_EQ(dot->frame.height, 6);
    dot->frame = {};
    EXPECT_EQ(*dot, appearance) << static_cast<int>(status);
  }
}

TEST_F(PillViewTest, TheDotOfDataThatIsNotCurrentIsGreyAndStill) {
  layOut(300);
  for (const auto status :
       {Status::live, Status::inningsBreak, Status::notStarted, Status::countdown}) {
    for (const bool isSample : {true, false}) {
      auto content = withStatus(status);
      content.isSample = isSample;
      content.isStale = !isSample;
      view_.setContent(content);
      auto dot = view_.dot().value();
      dot.frame = {};
      EXPECT_EQ(dot, expectedDot(grey, 3, 0, false));
    }
  }
}

TEST_F(PillViewTest, TheDotSitsInTheMiddleOfItsElement) {
  layOut(180);
  EXPECT_EQ(described(view_.dot()->frame), described(Rect{(180 - liveWidth) * 0.5, 9, 6, 6}));
}

TEST_F(PillViewTest, AnAlertHasNoDot) {
  layOut(180);
  view_.setContent(PillContent::boom("SIX!", "MI"));
  EXPECT_EQ(view_.dot(), std::nullopt);
}

TEST_F(PillViewTest, AThemeLightsTheDotFromBehind) {
  layOut(180);
  view_.setTheme(TeamTheme::named("csk"));
  EXPECT_EQ(view_.dot()->shadowColor, (Color{RGB(0xF9CD05), 1}));
  EXPECT_EQ(view_.dot()->color, (Color{ball, 1}));
}

TEST_F(PillViewTest, WithReducedMotionTheLiveDotShinesWithoutPulsing) {
  desktop_.reducesMotion = true;
  layOut(180);
  auto dot = view_.dot().value();
  dot.frame = {};
  EXPECT_EQ(dot, expectedDot(ball, 5, 1, false));
}

TEST_F(PillViewTest, ReducedMotionTakesEffectWhileThePillIsShown) {
  const auto record = std::make_shared<PillSurfaceRecord>();
  RecordingPillSurface surface(record);
  layOut(180);
  view_.setSurface(&surface);
  EXPECT_TRUE(record->dot->pulses);
  desktop_.reducesMotion = true;
  desktop_.reduceMotionChanged.notify();
  EXPECT_FALSE(record->dot->pulses);
  desktop_.reducesMotion = false;
  desktop_.reduceMotionChanged.notify();
  EXPECT_TRUE(record->dot->pulses);
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
