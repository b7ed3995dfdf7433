// What the desktop's bars leave free of each screen, when there are several. (Of a single screen Qt
// tells it itself.)
#pragma once

#include <QRect>
#include <QSize>

#include <span>
#include <vector>

namespace kestrow::qt {

// A bar's claim at one edge of the whole display: how deep, and from where to where along the edge,
// in pixels; the ends are inclusive.
struct Strut {
  enum class Edge { left, right, top, bottom };
  Edge edge = Edge::top;
  int depth = 0;
  int start = 0;
  int end = 0;
};

// The screen without what the bars claim of it. `display` is the size of all screens together. A
// claim that would leave nothing of the screen was meant for one behind it, and is ignored.
QRect workArea(const QRect& screen, const QSize& display, std::span<const Strut> struts);

// The free areas as the desktop shell tells them, one for each of the screens, in no order; or the
// claims of the bars on the X display. Empty where there is no X display.
std::vector<QRect> shellWorkAreas();
std::vector<Strut> barStruts();

}  // namespace kestrow::qt
