#include "Kestrow/Qt/QtCoordinates.hpp"

#include <gtest/gtest.h>

namespace kestrow::qt {
namespace {

TEST(QtCoordinates, CountsFromTheBottomLeftOfTheFirstScreenUpwards) {
  const QRectF primary(0, 0, 1440, 900);
  EXPECT_EQ(toPoints(primary, primary), (Rect{0, 0, 1440, 900}));
  EXPECT_EQ(toPoints(QRectF(620, 0, 200, 24), primary), (Rect{620, 876, 200, 24}));
  EXPECT_EQ(toPoints(QRectF(1440, 100, 1000, 1000), primary), (Rect{1440, -200, 1000, 1000}));
}

TEST(QtCoordinates, TheFirstScreenNeedNotBeAtQtsOrigin) {
  const QRectF primary(1000, 200, 800, 600);
  EXPECT_EQ(toPoints(primary, primary), (Rect{0, 0, 800, 600}));
  EXPECT_EQ(toPoints(QRectF(0, 0, 1000, 800), primary), (Rect{-1000, 0, 1000, 800}));
  EXPECT_EQ(fromPoints({0, 0, 800, 600}, primary), QRect(1000, 200, 800, 600));
}

TEST(QtCoordinates, GoesThereAndBack) {
  const QRectF primary(50, 25, 1440, 900);
  const QRect window(700, 25, 213, 40);
  EXPECT_EQ(fromPoints(toPoints(window, primary), primary), window);
}

TEST(QtCoordinates, EdgesBetweenWholePointsGoToTheNearest) {
  const QRectF primary(0, 0, 1440, 900);
  EXPECT_EQ(fromPoints({619.75, 876, 200.5, 24}, primary), QRect(620, 0, 200, 24));
  EXPECT_EQ(fromPoints({10.4, 860.4, 20.4, 39.6}, primary), QRect(10, 0, 21, 40));
}

}  // namespace
}  // namespace kestrow::qt
