#include "KestrowCore/ScreenGeometry.hpp"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <span>
#include <variant>

namespace kestrow {
namespace {

// A laptop's screen with a camera housing of 200 × 32 points in the middle of its top edge.
ScreenInfo notched() {
  return {.frame = {100, 50, 1400, 900},
          .auxiliaryTopLeftArea = Rect{100, 918, 600, 32},
          .auxiliaryTopRightArea = Rect{900, 918, 600, 32},
          .safeAreaTop = 32,
          .menuBarHeight = 37};
}

ScreenInfo plain() {
  return {.frame = {-1920, 0, 1920, 1080}, .menuBarHeight = 30};
}

PillLayout::Notch wings(const ScreenInfo& screen, double left, double right) {
  return std::get<PillLayout::Notch>(ScreenGeometry::layout(screen, left, right, 300).form);
}

Rect capsule(const ScreenInfo& screen, double text) {
  return std::get<PillLayout::Drawn>(ScreenGeometry::layout(screen, 0, 0, text).form).rect;
}

TEST(ScreenTarget, IsTheFirstScreen) {
  const std::array screens{plain(), notched()};
  EXPECT_EQ(ScreenGeometry::target(screens), plain());
  EXPECT_EQ(ScreenGeometry::target(std::span<const ScreenInfo>()), std::nullopt);
}

TEST(CameraHousing, LiesBetweenTheAuxiliaryAreas) {
  EXPECT_EQ(ScreenGeometry::notchRect(notched()), (Rect{700, 918, 200, 32}));
}

TEST(CameraHousing, IsThereOnlyWithBothAuxiliaryAreas) {
  EXPECT_EQ(ScreenGeometry::notchRect(plain()), std::nullopt);
  ScreenInfo screen = notched();
  screen.auxiliaryTopLeftArea.reset();
  EXPECT_EQ(ScreenGeometry::notchRect(screen), std::nullopt);
  screen = notched();
  screen.auxiliaryTopRightArea.reset();
  EXPECT_EQ(ScreenGeometry::notchRect(screen), std::nullopt);
}

TEST(CameraHousing, IsAbsentWhereTheAreasMeetOrOverlap) {
  ScreenInfo screen = notched();
  screen.auxiliaryTopLeftArea->width = 799;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), (Rect{899, 918, 1, 32}));
  screen.auxiliaryTopLeftArea->width = 800;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), std::nullopt);
  screen.auxiliaryTopLeftArea->width = 900;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), std::nullopt);
  EXPECT_TRUE(
      std::holds_alternative<PillLayout::Drawn>(ScreenGeometry::layout(screen, 50, 50, 50).form));
}

TEST(CameraHousing, IsAsTallAsTheTallerAreaWithoutASafeAreaInset) {
  ScreenInfo screen = notched();
  screen.safeAreaTop = 0;
  screen.auxiliaryTopLeftArea->height = 20;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), (Rect{700, 918, 200, 32}));
  screen.auxiliaryTopLeftArea->height = 40;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), (Rect{700, 910, 200, 40}));
  screen.safeAreaTop = 0.5;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), (Rect{700, 949.5, 200, 0.5}));
  screen.safeAreaTop = -3;
  EXPECT_EQ(ScreenGeometry::notchRect(screen), (Rect{700, 910, 200, 40}));
}

TEST(WingLayout, TouchesTheHousingOnBothSides) {
  const PillLayout::Notch layout = wings(notched(), 80.2, 60);
  EXPECT_EQ(layout.left, (Rect{700 - 105, 918, 105, 32}));
  EXPECT_EQ(layout.right, (Rect{900, 918, 84, 32}));
  EXPECT_EQ(layout.notch, (Rect{700, 918, 200, 32}));
}

TEST(WingLayout, IsNeverWiderThan200Points) {
  EXPECT_EQ(wings(notched(), 176, 177).left.width, 200);
  EXPECT_EQ(wings(notched(), 175, 177).left.width, 199);
  EXPECT_EQ(wings(notched(), 5000, 5000).left, (Rect{500, 918, 200, 32}));
  EXPECT_EQ(wings(notched(), 5000, 5000).right, (Rect{900, 918, 200, 32}));
}

TEST(WingLayout, IsNeverWiderThanItsArea) {
  ScreenInfo screen = notched();
  screen.frame = {0, 0, 300, 900};
  screen.auxiliaryTopLeftArea = Rect{0, 868, 50, 32};
  screen.auxiliaryTopRightArea = Rect{240, 868, 60, 32};
  EXPECT_EQ(wings(screen, 500, 500).left, (Rect{0, 868, 50, 32}));
  EXPECT_EQ(wings(screen, 500, 500).right, (Rect{240, 868, 60, 32}));
}

TEST(WingLayout, KeepsItsPaddingWithoutContent) {
  EXPECT_EQ(wings(notched(), 50, 0).right, (Rect{900, 918, 24, 32}));
}

TEST(CapsuleLayout, HangsFromTheMiddleOfTheTopEdge) {
  EXPECT_EQ(capsule(plain(), 99.1), (Rect{-1920 + 960 - 62, 1050, 124, 30}));
  EXPECT_EQ(capsule(plain(), 99), (Rect{-1920 + 960 - 61.5, 1050, 123, 30}));
}

TEST(CapsuleLayout, Is24PointsTallWithoutAMenuBar) {
  ScreenInfo screen = plain();
  screen.menuBarHeight = 0;
  EXPECT_EQ(capsule(screen, 76), (Rect{-1920 + 960 - 50, 1056, 100, 24}));
  screen.menuBarHeight = -1;
  EXPECT_EQ(capsule(screen, 76).height, 24);
  screen.menuBarHeight = 0.5;
  EXPECT_EQ(capsule(screen, 76).height, 0.5);
}

TEST(CapsuleLayout, IsNeverWiderThanTheScreen) {
  EXPECT_EQ(capsule(plain(), 1896).width, 1920);
  EXPECT_EQ(capsule(plain(), 1895).width, 1919);
  EXPECT_EQ(capsule(plain(), 5000), (Rect{-1920, 1050, 1920, 30}));
}

TEST(LayoutBounds, SpanBothWings) {
  EXPECT_EQ(ScreenGeometry::layout(notched(), 76, 36, 0).bounds(), (Rect{600, 918, 360, 32}));
  const PillLayout drawn{PillLayout::Drawn{{1, 2, 3, 4}}};
  EXPECT_EQ(drawn.bounds(), (Rect{1, 2, 3, 4}));
}

TEST(LayoutMap, KeepsTheFormAndPassesEveryRectangleThrough) {
  const auto shift = [](Rect rect) { return rect.translated(10, -5); };
  const PillLayout notch{PillLayout::Notch{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}}};
  EXPECT_EQ(notch.map(shift),
            (PillLayout{PillLayout::Notch{{11, -3, 3, 4}, {15, 1, 7, 8}, {19, 5, 11, 12}}}));
  const PillLayout drawn{PillLayout::Drawn{{1, 2, 3, 4}}};
  EXPECT_EQ(drawn.map(shift), (PillLayout{PillLayout::Drawn{{11, -3, 3, 4}}}));
}

TEST(LayoutMap, OfTheIdentityChangesNothing) {
  const auto same = [](Rect rect) { return rect; };
  for (const ScreenInfo& screen : {notched(), plain()}) {
    const PillLayout layout = ScreenGeometry::layout(screen, 40, 50, 60);
    EXPECT_EQ(layout.map(same), layout);
  }
}

TEST(TextRoom, IsThePillWithoutItsPadding) {
  EXPECT_EQ(ScreenGeometry::textWidth(100), 76);
  EXPECT_EQ(ScreenGeometry::textWidth(24), 0);
  EXPECT_EQ(ScreenGeometry::textWidth(10), 0);
  EXPECT_EQ(ScreenGeometry::textWidth(24.5), 0.5);
}

}  // namespace
}  // namespace kestrow
