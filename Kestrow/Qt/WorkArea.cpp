#include "Kestrow/Qt/WorkArea.hpp"

#include "Kestrow/Qt/X11.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrow::qt {
namespace {

QRect claimed(const QSize& display, const Strut& strut) {
  const int length = strut.end - strut.start + 1;
  switch (strut.edge) {
    case Strut::Edge::left:
      return {0, strut.start, strut.depth, length};
    case Strut::Edge::right:
      return {display.width() - strut.depth, strut.start, strut.depth, length};
    case Strut::Edge::top:
      return {strut.start, 0, length, strut.depth};
    case Strut::Edge::bottom:
      return {strut.start, display.height() - strut.depth, length, strut.depth};
  }
  return {};
}

QRect without(QRect area, Strut::Edge edge, const QRect& bar) {
  switch (edge) {
    case Strut::Edge::left:
      area.setLeft(std::max(area.left(), bar.right() + 1));
      break;
    case Strut::Edge::right:
      area.setRight(std::min(area.right(), bar.left() - 1));
      break;
    case Strut::Edge::top:
      area.setTop(std::max(area.top(), bar.bottom() + 1));
      break;
    case Strut::Edge::bottom:
      area.setBottom(std::min(area.bottom(), bar.top() - 1));
      break;
  }
  return area;
}

// A property of 32-bit values; empty when it is not there.
std::vector<std::uint32_t> values(xcb_get_property_cookie_t cookie) {
  const x11::Reply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(x11::connection(), cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

// Of the root window.
std::vector<std::uint32_t> values(std::string_view property, xcb_atom_t type) {
  return values(
      xcb_get_property(x11::connection(), 0, x11::root(), x11::atom(property), type, 0, 4096));
}

void append(std::vector<Strut>& struts, const std::vector<std::uint32_t>& partial) {
  constexpr std::array edges{Strut::Edge::left, Strut::Edge::right, Strut::Edge::top,
                             Strut::Edge::bottom};
  if (partial.size() < 12) return;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (partial[i] == 0) continue;
    struts.push_back({.edge = edges[i],
                      .depth = static_cast<int>(partial[i]),
                      .start = static_cast<int>(partial[4 + (2 * i)]),
                      .end = static_cast<int>(partial[5 + (2 * i)])});
  }
}

}  // namespace

QRect workArea(const QRect& screen, const QSize& display, std::span<const Strut> struts) {
  QRect area = screen;
  for (const Strut& strut : struts) {
    const QRect bar = claimed(display, strut);
    if (!bar.intersects(screen)) continue;
    const QRect rest = without(area, strut.edge, bar);
    if (!rest.isEmpty()) area = rest;
  }
  return area;
}

std::vector<QRect> shellWorkAreas() {
  if (!x11::connection()) return {};
  const auto desktop = values("_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL);
  const auto name = "_GTK_WORKAREAS_D" + std::to_string(desktop.empty() ? 0 : desktop.front());
  const auto numbers = values(name, XCB_ATOM_CARDINAL);
  std::vector<QRect> areas;
  for (std::size_t i = 0; i + 3 < numbers.size(); i += 4) {
    areas.emplace_back(static_cast<int>(numbers[i]), static_cast<int>(numbers[i + 1]),
                       static_cast<int>(numbers[i + 2]), static_cast<int>(numbers[i + 3]));
  }
  return areas;
}

std::vector<Strut> barStruts() {
  auto* const x = x11::connection();
  if (!x) return {};
  const auto partial = x11::atom("_NET_WM_STRUT_PARTIAL");
  std::vector<xcb_get_property_cookie_t> cookies;
  for (const auto window : values("_NET_CLIENT_LIST", XCB_ATOM_WINDOW)) {
    cookies.push_back(xcb_get_property(x, 0, window, partial, XCB_ATOM_CARDINAL, 0, 12));
  }
  std::vector<Strut> struts;
  for (const auto cookie : cookies) append(struts, values(cookie));
  return struts;
}

}  // namespace kestrow::qt
