#include "Kestrow/Qt/QtText.hpp"

#include <QFontDatabase>
#include <QFontInfo>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace kestrow::qt {
namespace {

AttributedText text(const std::string& content, const Font& font, double kerning = 0) {
  return {{content, {font, {}, kerning, std::nullopt}}};
}

constexpr Font score{13, FontWeight::bold, true};
constexpr Font plain{13, FontWeight::bold, false};

double width(const AttributedText& line) {
  return TextLine(line).size().width;
}

TEST(QtText, DrawsInInterWhereItIsInstalled) {
  if (!QFontDatabase::hasFamily("Inter")) GTEST_SKIP() << "Inter is not installed";
  EXPECT_EQ(QFontInfo(interfaceFont(plain)).family(), "Inter");
}

TEST(QtText, EveryWeightIsHeavierThanTheOneBefore) {
  QFont::Weight last = QFont::Thin;
  for (const auto weight : {FontWeight::regular, FontWeight::medium, FontWeight::semibold,
                            FontWeight::bold, FontWeight::heavy}) {
    const auto now = interfaceFont({11, weight, false}).weight();
    EXPECT_GT(now, last);
    last = now;
  }
}

TEST(QtText, DigitsOfEqualWidthTakeAsMuchRoomWhicheverTheyAre) {
  EXPECT_DOUBLE_EQ(width(text("11:11", score)), width(text("00:00", score)));
  EXPECT_DOUBLE_EQ(width(text("145/3", score)), width(text("788/6", score)));
}

TEST(QtText, DigitsOfTheirOwnWidthAreNoWiderThanEqualOnes) {
  EXPECT_LE(width(text("1111", plain)), width(text("1111", score)));
  EXPECT_DOUBLE_EQ(width(text("Stumps", plain)), width(text("Stumps", score)));
}

TEST(QtText, KerningComesAfterEveryCharacterTheLastToo) {
  EXPECT_NEAR(width(text("MI", plain, 0.6)), width(text("MI", plain)) + 1.2, 0.02);
}

TEST(QtText, RunsFollowEachOther) {
  AttributedText line = text("MI", plain, 0.6);
  line.push_back(text(" v ", plain, 0.6).front());
  EXPECT_NEAR(width(line), width(text("MI", plain, 0.6)) + width(text(" v ", plain, 0.6)), 1e-9);
}

TEST(QtText, AnEmptyTextIsAsHighAsALineAndHasNoWidth) {
  EXPECT_EQ(width(text("", plain)), 0);
  EXPECT_EQ(TextLine(text("", plain)).size().height, TextLine(text("A", plain)).size().height);
  EXPECT_EQ(TextLine({}).size(), Size{});
}

TEST(QtText, ALineIsAsHighWhateverItsScript) {
  const double latin = TextLine(text("MI", plain)).size().height;
  for (const auto* name : {"मुंबई", "சென்னை", "كراتشي", "🏏"}) {
    EXPECT_EQ(TextLine(text(name, plain)).size().height, latin) << name;
    EXPECT_GT(width(text(name, plain)), 0) << name;
  }
}

TEST(QtText, TheCapitalsAreInTheMiddleOfTheBox) {
  const TextLine line(text("MI", plain));
  const QFontMetricsF metrics(interfaceFont(plain));
  EXPECT_NEAR(line.baseline() - metrics.capHeight() * 0.5, line.size().height * 0.5, 1e-9);
}

TEST(QtText, ABlurKeepsTheLightAndSpreadsItEvenly) {
  QImage dot(41, 41, QImage::Format_ARGB32_Premultiplied);
  dot.fill(Qt::transparent);
  dot.fill(Qt::transparent);
  for (int y = 17; y < 24; ++y) {
    for (int x = 17; x < 24; ++x) dot.setPixelColor(x, y, Qt::white);
  }
  const QImage light = blurred(dot, 4, QColor(255, 182, 39));
  double sum = 0;
  for (int y = 0; y < 41; ++y) {
    for (int x = 0; x < 41; ++x) {
      sum += qAlpha(light.pixel(x, y));
      EXPECT_EQ(light.pixel(x, y), light.pixel(40 - x, y));
      EXPECT_EQ(light.pixel(x, y), light.pixel(x, 40 - y));
      EXPECT_EQ(light.pixel(x, y), light.pixel(y, x));
    }
  }
  EXPECT_NEAR(sum / 255, 49, 2);
  // A Gaussian of deviation 4 over a square of 7 leaves (2 Phi(3.5/4) - 1)^2 of it in the middle.
  const double middle = std::pow(std::erf(3.5 / 4 / std::sqrt(2.0)), 2);
  EXPECT_NEAR(qAlpha(light.pixel(20, 20)) / 255.0, middle, 0.02);
}

}  // namespace
}  // namespace kestrow::qt
