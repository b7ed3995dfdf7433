// Points, sizes and rectangles. Units are points; the origin is at the bottom left and y grows
// upwards, so a screen's top edge is its maxY.
#pragma once

#include <algorithm>

namespace kestrow {

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double minX() const { return x; }
  double midX() const { return x + width * 0.5; }
  double maxX() const { return x + width; }
  double minY() const { return y; }
  double midY() const { return y + height * 0.5; }
  double maxY() const { return y + height; }

  Rect translated(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

  // The smallest rectangle that holds both.
  Rect united(const Rect& other) const {
    const double left = std::min(minX(), other.minX());
    const double bottom = std::min(minY(), other.minY());
    return {left, bottom, std::max(maxX(), other.maxX()) - left,
            std::max(maxY(), other.maxY()) - bottom};
  }

  bool operator==(const Rect&) const = default;
};

}  // namespace kestrow
