// Between the program's coordinates and Qt's. The program counts from the bottom left corner of the
// first screen, y upwards; Qt from a top left corner, y downwards. Both count in points.
#pragma once

#include "KestrowCore/Geometry.hpp"

#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>

namespace kestrow::qt {

// The rectangle as the program sees it. `primary` is the first screen's geometry in Qt.
inline Rect toPoints(const QRectF& rect, const QRectF& primary) {
  return {rect.left() - primary.left(),
          primary.top() + primary.height() - rect.top() - rect.height(), rect.width(),
          rect.height()};
}

// The way back. Windows have whole coordinates in Qt: the edges go to the nearest ones, so that
// rectangles which touch still touch.
inline QRect fromPoints(const Rect& rect, const QRectF& primary) {
  const QPoint topLeft =
      QPointF(rect.minX() + primary.left(), primary.top() + primary.height() - rect.maxY())
          .toPoint();
  const QPoint bottomRight =
      QPointF(rect.maxX() + primary.left(), primary.top() + primary.height() - rect.minY())
          .toPoint();
  return {topLeft, QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y())};
}

}  // namespace kestrow::qt
