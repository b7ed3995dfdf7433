#include "Kestrow/Platform/Canvas.hpp"

#include <algorithm>

namespace kestrow {

Path Path::rect(const Rect& rect) {
  return {{MoveTo{{rect.minX(), rect.minY()}}, LineTo{{rect.maxX(), rect.minY()}},
           LineTo{{rect.maxX(), rect.maxY()}}, LineTo{{rect.minX(), rect.maxY()}}, Close{}}};
}

Path Path::roundedRect(const Rect& rect, double radius) {
  const double r = std::min({radius, rect.width * 0.5, rect.height * 0.5});
  const double left = rect.minX() + r;
  const double right = rect.maxX() - r;
  const double bottom = rect.minY() + r;
  const double top = rect.maxY() - r;
  return {{MoveTo{{left, rect.minY()}}, LineTo{{right, rect.minY()}},
           Arc{{right, bottom}, r, -90, 0, false}, LineTo{{rect.maxX(), top}},
           Arc{{right, top}, r, 0, 90, false}, LineTo{{left, rect.maxY()}},
           Arc{{left, top}, r, 90, 180, false}, LineTo{{rect.minX(), bottom}},
           Arc{{left, bottom}, r, 180, 270, false}, Close{}}};
}

}  // namespace kestrow
