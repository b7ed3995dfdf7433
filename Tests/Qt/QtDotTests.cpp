#include "Kestrow/Qt/QtDot.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kestrow::qt {
namespace {

constexpr Rect bounds{0, 0, 40, 24};

DotAppearance liveDot() {
  return {.frame = {12, 9, 6, 6},
          .cornerRadius = 3,
          .color = {{0.9, 0.1, 0.2}, 1},
          .shadowColor = {{0.9, 0.1, 0.2}, 1},
          .shadowRadius = 5,
          .shadowOpacity = 1,
          .pulses = true};
}

// The smallest rectangle, in pixels, around what was painted.
QRect inkOf(const QImage& picture) {
  QRect ink;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (qAlpha(picture.pixel(x, y)) > 0) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

TEST(QtDot, OneBeatGoesThereAndBackInTwiceItsDuration) {
  const QtDot dot([] {});
  EXPECT_NEAR(dot.progress(Seconds(0)), 0, 1e-6);
  EXPECT_NEAR(dot.progress(Seconds(0.4)), 0.5, 1e-3);
  EXPECT_NEAR(dot.progress(Seconds(0.8)), 1, 1e-6);
  EXPECT_NEAR(dot.progress(Seconds(1.2)), 0.5, 1e-3);
  EXPECT_NEAR(dot.progress(Seconds(1.6)), 0, 1e-6);
  EXPECT_NEAR(dot.progress(Seconds(16.4)), 0.5, 1e-3);
}

TEST(QtDot, ABeatIsSlowAtBothEnds) {
  const QtDot dot([] {});
  EXPECT_LT(dot.progress(Seconds(0.1)), 0.1 / 0.8);
  EXPECT_GT(dot.progress(Seconds(0.7)), 0.7 / 0.8);
}

TEST(QtDot, RunsOnlyWhileItPulsesAndIsSeen) {
  QtDot dot([] {});
  EXPECT_FALSE(dot.isRunning());
  dot.show(liveDot());
  EXPECT_TRUE(dot.isRunning());
  EXPECT_TRUE(dot.setSeen(false));
  EXPECT_FALSE(dot.isRunning());
  EXPECT_FALSE(dot.setSeen(false));
  EXPECT_TRUE(dot.setSeen(true));
  EXPECT_TRUE(dot.isRunning());
  auto still = liveDot();
  still.pulses = false;
  dot.show(still);
  EXPECT_FALSE(dot.isRunning());
  EXPECT_FALSE(dot.setSeen(false));
  EXPECT_FALSE(dot.setSeen(true));
  dot.show(liveDot());
  dot.show(std::nullopt);
  EXPECT_FALSE(dot.isRunning());
}

TEST(QtDot, ItsAreaHoldsTheDotAndItsLight) {
  QtDot dot([] {});
  EXPECT_TRUE(dot.area(bounds).isEmpty());
  dot.show(liveDot());
  EXPECT_EQ(dot.area(bounds), QRect(15 - 11, 12 - 11, 22, 22));
  EXPECT_EQ(dot.area({-5, 4, 40, 24}), QRect(20 - 11, 16 - 11, 22, 22));
}

TEST(QtDot, PaintsNothingOutsideItsArea) {
  QtDot dot([] {});
  dot.show(liveDot());
  QImage picture(40, 24, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  dot.paint(painter, bounds, 1);
  painter.end();
  const QRect area = dot.area(bounds);
  EXPECT_GT(qAlpha(picture.pixel(15, 12)), 240);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      EXPECT_TRUE(area.contains(x, y) || picture.pixel(x, y) == 0) << x << ' ' << y;
    }
  }
}

// The dot alone, painted with its centre there.
QImage grey(QPointF centre, double scale) {
  auto appearance = liveDot();
  appearance.frame = {centre.x() - 3, 24 - centre.y() - 3, 6, 6};
  appearance.pulses = false;
  appearance.shadowOpacity = 0;
  QImage picture(QSizeF(40 * scale, 24 * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QtDot dot([] {});
  dot.show(appearance);
  dot.paint(painter, bounds, scale);
  return picture;
}

// How far apart two opposite pixels are at most.
int unlikeness(const QImage& picture) {
  int most = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb opposite = picture.pixel(picture.width() - 1 - x, picture.height() - 1 - y);
      most = std::max(most, std::abs(qAlpha(picture.pixel(x, y)) - qAlpha(opposite)));
    }
  }
  return most;
}

TEST(QtDot, IsAsRoundWhereverItsCentreIsAndAtEveryScale) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    for (const double off : {0.0, 0.3, 0.5, 0.8}) {
      const QImage picture = grey({15 + off, 12 + off}, scale);
      const QRect ink = inkOf(picture);
      EXPECT_EQ(ink.width(), ink.height()) << scale << ' ' << off;
      EXPECT_LE(ink.width(), 6 * scale + 1) << scale << ' ' << off;
      EXPECT_LE(unlikeness(picture.copy(ink)), 12) << scale << ' ' << off;
      EXPECT_NEAR((ink.left() + ink.right() + 1) * 0.5 / scale, 15 + off, 0.51 / scale);
    }
  }
}

TEST(QtDot, AGreyDotHasNoLight) {
  auto grey = liveDot();
  grey.pulses = false;
  grey.shadowOpacity = 0;
  QtDot dot([] {});
  dot.show(grey);
  QImage picture(40, 24, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  dot.paint(painter, bounds, 1);
  painter.end();
  EXPECT_EQ(picture.pixel(15, 4), 0U);
  EXPECT_EQ(qAlpha(picture.pixel(15, 12)), 255);
}

}  // namespace
}  // namespace kestrow::qt
