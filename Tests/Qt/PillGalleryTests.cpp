// Compares the pill's pictures with the stored ones. After a wanted change look at the differences
// and the new pictures, then store them with scripts/gallery.
#include "Tests/Gallery/PillGallery.hpp"

#include <QDir>
#include <QFontDatabase>
#include <QImage>
#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace kestrow::gallery {
namespace {

// Rasterizers may round a covered pixel differently; a moved letter or another colour is more.
constexpr int tolerance = 8;
constexpr int allowedPixels = 20;

class PillGallery : public testing::TestWithParam<std::tuple<std::string, double>> {};

TEST_P(PillGallery, LooksAsItDid) {
  ASSERT_TRUE(QFontDatabase::hasFamily("Inter")) << "the pictures are drawn in Inter: install it";
  const auto& [name, scale] = GetParam();
  const QString file = stripFile(name, scale);
  const QImage stored(QString::fromUtf8(KESTROW_FIXTURES "/gallery/") + file);
  ASSERT_FALSE(stored.isNull()) << "no stored picture " << file.toStdString();
  const QImage now = strip(name, scale);
  const Difference found = difference(stored, now, tolerance);
  if (found.pixels <= allowedPixels) return;
  const QDir folder(QDir::current().filePath("gallery-differences"));
  folder.mkpath(".");
  now.save(folder.filePath("now-" + file));
  if (!found.picture.isNull()) found.picture.save(folder.filePath("difference-" + file));
  FAIL() << found.pixels << " pixels of " << file.toStdString() << " differ: see "
         << folder.path().toStdString();
}

INSTANTIATE_TEST_SUITE_P(EveryStatus, PillGallery,
                         testing::Combine(testing::ValuesIn(stripNames()),
                                          testing::Values(1.0, 2.0)),
                         [](const auto& parameter) {
                           std::string name = std::get<0>(parameter.param);
                           std::erase(name, '-');
                           return name + (std::get<1>(parameter.param) > 1 ? "At2x" : "At1x");
                         });

TEST(Difference, CountsThePixelsBeyondTheTolerance) {
  QImage one(4, 4, QImage::Format_RGB32);
  one.fill(Qt::black);
  QImage other = one;
  other.setPixel(1, 2, qRgb(0, 25, 0));
  other.setPixel(2, 2, qRgb(24, 24, 24));
  EXPECT_EQ(difference(one, other, 24).pixels, 1);
  EXPECT_EQ(qRed(difference(one, other, 24).picture.pixel(1, 2)), 255);
  EXPECT_EQ(difference(one, one, 0).pixels, 0);
  EXPECT_EQ(difference(one, QImage(3, 4, QImage::Format_RGB32), 24).pixels, 16);
}

}  // namespace
}  // namespace kestrow::gallery
