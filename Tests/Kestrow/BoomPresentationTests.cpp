#include "Kestrow/BoomPresentation.hpp"
#include "KestrowCore/Text.hpp"
#include "Tests/Support/FakeDesktop.hpp"

#include <gtest/gtest.h>

namespace kestrow {
namespace {

BoomEvent event(BoomKind kind, std::optional<std::string> batter = "R Sharma") {
  BoomEvent result;
  result.id = 7;
  result.kind = kind;
  result.team = "MI";
  result.batter = std::move(batter);
  return result;
}

PillContent score() {
  PillContent content;
  content.status = PillContent::Status::live;
  content.primary = "145/3";
  content.isStale = true;
  return content;
}

TEST(BoomPresentation, CallsOutWhatHappened) {
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::four)).label, "FOUR!");
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::six)).label, "SIX!");
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::wicket)).label, "WICKET!");
}

TEST(BoomPresentation, WhatIsNoScoringEventGoesByTheProgramsName) {
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::correction)).label, "Kestrow");
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::other)).label, "Kestrow");
}

TEST(BoomPresentation, NamesTheBatterAndTheSide) {
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::six)).who, "R Sharma (MI)");
}

TEST(BoomPresentation, NamesTheSideAloneWhenTheBatterIsUnknown) {
  EXPECT_EQ(BoomPresentation::text(event(BoomKind::six, std::nullopt)).who, "MI");
}

TEST(BoomPresentation, TheBigStyleReplacesTheScoreAndExpands) {
  const auto [content, emphasis] =
      BoomPresentation::present(event(BoomKind::wicket), AlertStyle::big, score());
  EXPECT_EQ(content, PillContent::boom("WICKET!", "R Sharma (MI)"));
  EXPECT_EQ(emphasis, PillEmphasis::expanded);
}

TEST(BoomPresentation, TheSubtleStyleKeepsTheScoreAndFlashes) {
  const auto [content, emphasis] =
      BoomPresentation::present(event(BoomKind::wicket), AlertStyle::subtle, score());
  EXPECT_EQ(content, score());
  EXPECT_EQ(emphasis, PillEmphasis::flash);
}

TEST(BoomPresentation, AnnouncesThroughTheDesktop) {
  FakeDesktop desktop;
  BoomPresentation::announce(desktop, "SIX! R Sharma (MI)");
  EXPECT_EQ(desktop.announcements, std::vector<std::string>{"SIX! R Sharma (MI)"});
  BoomPresentation::announce(desktop, std::string(text::longestRead + 1, 'x'));
  EXPECT_EQ(desktop.announcements.back(), std::string(text::longestRead, 'x') + "…");
}

}  // namespace
}  // namespace kestrow
