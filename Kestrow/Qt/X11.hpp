// The X display that Qt is connected to. Elsewhere, as on a plain Wayland desktop, there is none.
#pragma once

#include <QByteArray>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace kestrow::qt::x11 {

struct Free {
  void operator()(void* memory) const { std::free(memory); }  // NOLINT(*-no-malloc): xcb's own
};

// An answer of the display; null when it could not answer.
template <class T>
using Reply = std::unique_ptr<T, Free>;

// Null without an X display.
xcb_connection_t* connection();

// The two of the display's first screen; 0, which nothing has, without an X display.
xcb_window_t root();
xcb_atom_t atom(std::string_view name);

// The event that a native event filter was handed; null when it is not the X display's.
const xcb_generic_event_t* event(const QByteArray& type, const void* message);

// Which event it is, whoever sent it.
int kind(const xcb_generic_event_t& event);

}  // namespace kestrow::qt::x11
