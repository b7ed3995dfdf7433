#include "Kestrow/Qt/WorkArea.hpp"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace kestrow::qt {
namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

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

// The X display that Qt is connected to, seen through its root window.
class Root {
 public:
  Root() {
    const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!native) return;
    connection_ = native->connection();
    window_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  }

  xcb_connection_t* connection() const { return connection_; }

  xcb_atom_t atom(std::string_view name) const {
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }

  std::vector<std::uint32_t> values(std::string_view property, xcb_atom_t type) const {
    const auto cookie = xcb_get_property(connection_, 0, window_, atom(property), type, 0, 4096);
    return values(cookie);
  }

  // A property of 32-bit values; empty when it is not there.
  std::vector<std::uint32_t> values(xcb_get_property_cookie_t cookie) const {
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
  }

 private:
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t window_ = 0;
};

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

std::uint32_t atomNamed(std::string_view name) {
  const Root root;
  return root.connection() ? root.atom(name) : 0;
}

std::vector<QRect> shellWorkAreas() {
  const Root root;
  if (!root.connection()) return {};
  const auto desktop = root.values("_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL);
  const auto name = "_GTK_WORKAREAS_D" + std::to_string(desktop.empty() ? 0 : desktop.front());
  const auto numbers = root.values(name, XCB_ATOM_CARDINAL);
  std::vector<QRect> areas;
  for (std::size_t i = 0; i + 3 < numbers.size(); i += 4) {
    areas.emplace_back(static_cast<int>(numbers[i]), static_cast<int>(numbers[i + 1]),
                       static_cast<int>(numbers[i + 2]), static_cast<int>(numbers[i + 3]));
  }
  return areas;
}

std::vector<Strut> barStruts() {
  const Root root;
  if (!root.connection()) return {};
  const auto partial = root.atom("_NET_WM_STRUT_PARTIAL");
  std::vector<xcb_get_property_cookie_t> cookies;
  for (const auto window : root.values("_NET_CLIENT_LIST", XCB_ATOM_WINDOW)) {
    cookies.push_back(
        xcb_get_property(root.connection(), 0, window, partial, XCB_ATOM_CARDINAL, 0, 12));
  }
  std::vector<Strut> struts;
  for (const auto cookie : cookies) append(struts, root.values(cookie));
  return struts;
}

}  // namespace kestrow::qt
