#include "Kestrow/Qt/QtText.hpp"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QImage>
#include <QPainter>
#include <QTextLayout>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>

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

TEST(QtText, NoScriptThatTheSystemHasAFontForIsDrawnInBoxes) {
  for (const auto* name : {"मुंबई", "சென்னை", "كراتشي", "🏏🔥", "कोलकाता नाइट", "▸", "…", "“"}) {
    QTextLayout layout(QString::fromUtf8(name), interfaceFont(plain));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    for (const QGlyphRun& run : layout.glyphRuns()) {
      EXPECT_FALSE(run.glyphIndexes().contains(0)) << name;  // the glyph of what has none
    }
  }
}

TEST(QtText, TheCapitalsAreInTheMiddleOfTheBox) {
  const TextLine line(text("MI", plain));
  const QFontMetricsF metrics(interfaceFont(plain));
  EXPECT_NEAR(line.baseline() - metrics.capHeight() * 0.5, line.size().height * 0.5, 1e-9);
}

// How far to the right the ink of a colour is, on average.
double middle(const QImage& picture, Qt::GlobalColor color) {
  double sum = 0;
  double count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y) != QColor(color)) continue;
      sum += x;
      ++count;
    }
  }
  EXPECT_GT(count, 0);
  return sum / count;
}

QImage drawn(const AttributedText& line) {
  QImage picture(200, 24, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  TextLine(line).draw(painter, {5, 17}, 1);
  return picture;
}

AttributedText pairing(const std::string& first, const std::string& second) {
  AttributedText line = text(first, plain);
  line.push_back(text(" v ", plain).front());
  line.push_back(text(second, plain).front());
  line.front().attributes.color = {{1, 0, 0}, 1};
  line.back().attributes.color = {{0, 0, 1}, 1};
  return line;
}

TEST(QtText, RunsGoTheWayThatTheLineGoes) {
  const QImage latin = drawn(pairing("MI", "CSK"));
  EXPECT_LT(middle(latin, Qt::red), middle(latin, Qt::blue));
  const QImage arabic = drawn(pairing("كراتشي", "لاهور"));
  EXPECT_GT(middle(arabic, Qt::red), middle(arabic, Qt::blue));
}

TEST(QtText, ARunIsWhereItWouldBeInAnUncutLine) {
  for (const auto& [first, second] :
       {std::pair{"MI", "CSK"}, {"كراتشي", "لاهور"}, {"كراتشي", "CSK"}, {"MI", "لاهور"}}) {
    AttributedText inRuns = pairing(first, second);
    for (auto& run : inRuns) run.attributes.color = {};
    const QImage whole = drawn(text(std::string(first) + " v " + second, plain));
    EXPECT_EQ(drawn(inRuns), whole) << first << " v " << second;
  }
}

TEST(QtText, DigitsStandInTheMiddleOfTheirCells) {
  const double cell = width(text("0", score));
  const double one = width(text("1", plain));
  ASSERT_LT(one, cell - 1);
  QImage alone(40, 24, QImage::Format_ARGB32_Premultiplied);
  alone.fill(Qt::transparent);
  {
    QPainter painter(&alone);
    TextLine(text("1", plain)).draw(painter, {5 + (cell - one) / 2, 17}, 1);
  }
  EXPECT_EQ(drawn(text("1", score)).copy(0, 0, 40, 24), alone);
}

TEST(QtText, AColonIsAsHighBetweenAnyDigits) {
  const auto colon = [](const char* time) {
    const double middle = 5 + width(text("0", score)) + width(text(":", score)) / 2;
    return drawn(text(time, score)).copy(static_cast<int>(middle) - 1, 0, 2, 24);
  };
  EXPECT_EQ(colon("1:1"), colon("7:3"));
  EXPECT_EQ(colon("1:1"), colon("9:0"));
}

TEST(QtText, ANarrowSpaceIsNarrow) {
  EXPECT_NE(width(text("7:30\u202fPM", plain)), width(text("7:30 PM", plain)));
}

TEST(QtText, ABlurKeepsTheLightAndSpreadsItEvenly) {
  QImage dot(41, 41, QImage::Format_ARGB32_Premultiplied);
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

TEST(QtText, ABlurReachesBeyondAPictureThatIsNarrowerThanIt) {
  QImage picture(5, 3, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  picture.setPixelColor(1, 2, Qt::white);
  const QImage light = blurred(picture, 1, Qt::white);
  const auto weight = [](int distance) {
    const auto bell = [](int at) { return std::exp(-0.5 * at * at); };
    return bell(distance) / (bell(0) + 2 * (bell(1) + bell(2) + bell(3)));
  };
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 5; ++x) {
      EXPECT_NEAR(qAlpha(light.pixel(x, y)), 255 * weight(x - 1) * weight(y - 2), 0.51);
    }
  }
}

}  // namespace
}  // namespace kestrow::qt
