#include "Kestrow/Qt/QtCanvas.hpp"
#include "Kestrow/Qt/QtText.hpp"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <functional>

namespace kestrow::qt {
namespace {

constexpr Color red{{1, 0, 0}, 1};
constexpr Color blue{{0, 0, 1}, 1};

// A picture of 20 by 10 points, drawn on.
QImage drawn(double scale, const std::function<void(QtCanvas&)>& draw) {
  QImage image(QSizeF(20 * scale, 10 * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  QtCanvas canvas(painter, {0, 0, 20, 10}, scale);
  draw(canvas);
  return image;
}

int opaque(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += qAlpha(image.pixel(x, y)) == 255 ? 1 : 0;
  }
  return count;
}

int touched(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
  }
  return count;
}

TEST(QtCanvas, CountsUpwardsFromTheBottomLeft) {
  const auto image = drawn(1, [](QtCanvas& canvas) { canvas.fill(Path::rect({2, 1, 3, 2}), red); });
  EXPECT_EQ(opaque(image), 6);
  EXPECT_EQ(image.pixelColor(2, 8), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(4, 7), QColor(Qt::red));
  EXPECT_EQ(image.pixel(2, 9), 0U);
}

TEST(QtCanvas, TheOriginIsTheCornerOfTheBounds) {
  QImage image(20, 10, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  QtCanvas canvas(painter, {100, 50, 20, 10}, 1);
  canvas.fill(Path::rect({100, 50, 1, 1}), red);
  painter.end();
  EXPECT_EQ(image.pixelColor(0, 9), QColor(Qt::red));
}

TEST(QtCanvas, ARectangleBetweenPixelsFillsThemWholeAtEveryScale) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    const auto image = drawn(scale, [scale](QtCanvas& canvas) {
      // Two pixels from the top.
      canvas.fill(Path::rect({7 / scale, 10 - 7 / scale, 1 / scale, 5 / scale}), red);
    });
    EXPECT_EQ(opaque(image), 5) << scale;
    EXPECT_EQ(touched(image), 5) << scale;
  }
}

TEST(QtCanvas, AHairlineAlongAnEdgeFillsOneRowOfPixels) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    const auto image = drawn(scale, [scale](QtCanvas& canvas) {
      const double middle = 0.5 / scale;
      canvas.stroke({{Path::MoveTo{{middle, 0}}, Path::LineTo{{middle, 10}}}}, red, 1 / scale);
    });
    const int rows = static_cast<int>(10 * scale);
    EXPECT_EQ(opaque(image), rows) << scale;
    EXPECT_LE(touched(image), rows + 1) << scale;  // half of a row at the lower end
  }
}

TEST(QtCanvas, AShapeWithSlantingSidesIsNotTakenForARectangle) {
  const auto image = drawn(1, [](QtCanvas& canvas) {
    canvas.fill({{Path::MoveTo{{0, 0}}, Path::LineTo{{20, 0}}, Path::LineTo{{20, 10}},
                  Path::LineTo{{10, 10}}, Path::Close{}}},
                red);
  });
  EXPECT_EQ(image.pixel(0, 0), 0U);
  EXPECT_EQ(image.pixelColor(19, 0), QColor(Qt::red));
}

TEST(QtCanvas, ARoundedRectangleHasRoundCorners) {
  const auto image =
      drawn(1, [](QtCanvas& canvas) { canvas.fill(Path::roundedRect({0, 0, 20, 10}, 4), red); });
  for (const auto& [x, y] : {std::pair{0, 0}, {19, 0}, {0, 9}, {19, 9}}) {
    EXPECT_LT(qAlpha(image.pixel(x, y)), 80) << x << ' ' << y;
  }
  EXPECT_EQ(image.pixelColor(10, 0), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(0, 5), QColor(Qt::red));
}

TEST(QtCanvas, AnArcMayRunEitherWay) {
  const auto arc = [](bool clockwise) {
    return drawn(1, [clockwise](QtCanvas& canvas) {
      canvas.fill({{Path::MoveTo{{10, 0}}, Path::Arc{{10, 0}, 8, 0, 180, clockwise}}}, red);
    });
  };
  EXPECT_EQ(arc(false).pixelColor(10, 5), QColor(Qt::red));
  EXPECT_EQ(arc(true).pixel(10, 5), 0U);  // the other half, below the picture
}

TEST(QtCanvas, AGradientRunsFromTopToBottomAtMinusNinetyDegrees) {
  const auto image = drawn(
      1, [](QtCanvas& canvas) { canvas.fillGradient(Path::rect({0, 0, 20, 10}), red, blue, -90); });
  EXPECT_GT(image.pixelColor(3, 0).red(), 230);
  EXPECT_GT(image.pixelColor(3, 9).blue(), 230);
  EXPECT_EQ(image.pixel(3, 4), image.pixel(17, 4));
}

TEST(QtCanvas, AGradientRunsFromLeftToRightAtNoDegrees) {
  const auto image = drawn(
      1, [](QtCanvas& canvas) { canvas.fillGradient(Path::rect({0, 0, 20, 10}), red, blue, 0); });
  EXPECT_GT(image.pixelColor(0, 4).red(), 230);
  EXPECT_GT(image.pixelColor(19, 4).blue(), 230);
}

TEST(QtCanvas, ClipsNestAndEnd) {
  const auto image = drawn(1, [](QtCanvas& canvas) {
    {
      const ClipScope left(canvas, Path::rect({0, 0, 10, 10}));
      const ClipScope bottom(canvas, Path::rect({0, 0, 20, 5}));
      canvas.fill(Path::rect({0, 0, 20, 10}), red);
    }
    canvas.fill(Path::rect({19, 9, 1, 1}), blue);
  });
  EXPECT_EQ(opaque(image), 51);
  EXPECT_EQ(image.pixelColor(9, 5), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(19, 0), QColor(Qt::blue));
}

AttributedText line(const Color& color, std::optional<Glow> glow = std::nullopt) {
  return {{"8", {{8, FontWeight::bold, false}, color, 0, glow}}};
}

TEST(QtCanvas, TextStandsInItsMeasuredBox) {
  const auto image = drawn(4, [](QtCanvas& canvas) { canvas.drawText(line(red), {5, 0}, {}); });
  const Size size = QtTextMeasurer().measure(line(red));
  const QRect box(19, static_cast<int>((10 - size.height) * 4),
                  static_cast<int>(size.width * 4) + 2, static_cast<int>(size.height * 4));
  int inside = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qAlpha(image.pixel(x, y)) == 0) continue;
      EXPECT_TRUE(box.contains(x, y)) << x << ' ' << y;
      ++inside;
    }
  }
  EXPECT_GT(inside, 100);
}

TEST(QtCanvas, TextIsPlacedByItsAnchor) {
  const auto drawnAt = [](Point at, Anchor anchor) {
    return drawn(2, [&](QtCanvas& canvas) { canvas.drawText(line(red), at, anchor); });
  };
  const Size size = QtTextMeasurer().measure(line(red));
  const QImage fromCorner = drawnAt({5, 0}, {});
  EXPECT_EQ(drawnAt({5 + size.width, 0}, {1, 0}), fromCorner);
  EXPECT_EQ(drawnAt({5, size.height}, {0, 1}), fromCorner);
  EXPECT_EQ(drawnAt({5 + size.width * 0.5, size.height * 0.5}, {0.5, 0.5}), fromCorner);
}

TEST(QtCanvas, TextHasNoColouredEdges) {
  const auto image =
      drawn(1, [](QtCanvas& canvas) { canvas.drawText(line({{1, 1, 1}, 1}), {5.3, 0}, {}); });
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb pixel = image.pixel(x, y);
      EXPECT_TRUE(qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel));
    }
  }
}

TEST(QtCanvas, AGlowShinesAroundTheText) {
  const auto plain = drawn(2, [](QtCanvas& canvas) { canvas.drawText(line(red), {7, 0}, {}); });
  const auto glowing =
      drawn(2, [](QtCanvas& canvas) { canvas.drawText(line(red, Glow{blue, 4}), {7, 0}, {}); });
  EXPECT_GT(touched(glowing), 2 * touched(plain));
  int bluest = 0;
  for (int y = 0; y < glowing.height(); ++y) bluest = std::max(bluest, qBlue(glowing.pixel(12, y)));
  EXPECT_GT(bluest, 5);
}

}  // namespace
}  // namespace kestrow::qt
