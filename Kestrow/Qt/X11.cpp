#include "Kestrow/Qt/X11.hpp"

#include <QGuiApplication>

#include <cstdint>

namespace kestrow::qt::x11 {

xcb_connection_t* connection() {
  const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return native ? native->connection() : nullptr;
}

xcb_window_t root() {
  auto* const x = connection();
  return x ? xcb_setup_roots_iterator(xcb_get_setup(x)).data->root : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_atom_t atom(std::string_view name) {
  auto* const x = connection();
  if (!x) return XCB_ATOM_NONE;
  const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

const xcb_generic_event_t* event(const QByteArray& type, const void* message) {
  return type == "xcb_generic_event_t" ? static_cast<const xcb_generic_event_t*>(message) : nullptr;
}

int kind(const xcb_generic_event_t& event) {
  constexpr int sentByAnotherProgram = 0x80;
  return event.response_type & ~sentByAnotherProgram;
}

}  // namespace kestrow::qt::x11
