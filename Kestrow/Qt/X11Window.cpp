#include "Kestrow/Qt/X11Window.hpp"

#include <QGuiApplication>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace kestrow::qt {

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }  // NOLINT(*-no-malloc): xcb's own
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

// Null when the desktop is not X11.
xcb_connection_t* connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

}  // namespace

X11Window::X11Window(QWidget& widget, std::function<void()> changed)
    : changed_(std::move(changed)) {
  if (!connection()) return;
  window_ = static_cast<std::uint32_t>(widget.winId());
  watchCompositor();
  watchVisibility();
  qGuiApp->installNativeEventFilter(this);
}

X11Window::~X11Window() {
  if (window_ != 0 && qGuiApp) qGuiApp->removeNativeEventFilter(this);
}

// The compositor of a screen owns a selection named after it.
void X11Window::watchCompositor() {
  auto* const x = connection();
  const std::string name = "_NET_WM_CM_S0";
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
      x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  if (!atom) return;
  compositorAtom_ = atom->atom;
  const Reply<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, compositorAtom_), nullptr));
  isComposited_ = owner && owner->owner != XCB_WINDOW_NONE;

  const auto* fixes = xcb_get_extension_data(x, &xcb_xfixes_id);
  if (!fixes || !fixes->present) return;
  fixesEvent_ = fixes->first_event;
  const Reply<xcb_xfixes_query_version_reply_t> version(
      xcb_xfixes_query_version_reply(x, xcb_xfixes_query_version(x, 5, 0), nullptr));
  xcb_xfixes_select_selection_input(x, window_, compositorAtom_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

// Beside the events that Qt asked for.
void X11Window::watchVisibility() const {
  auto* const x = connection();
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, window_), nullptr));
  if (!attributes) return;
  const std::uint32_t mask = attributes->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
  xcb_change_window_attributes(x, window_, XCB_CW_EVENT_MASK, &mask);
}

bool X11Window::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  const auto kind = static_cast<std::uint8_t>(event->response_type & 0x7FU);
  bool composited = isComposited_;
  bool covered = isCovered_;
  if (kind == XCB_VISIBILITY_NOTIFY) {
    const auto* visibility = static_cast<const xcb_visibility_notify_event_t*>(message);
    if (visibility->window == window_) {
      covered = visibility->state == XCB_VISIBILITY_FULLY_OBSCURED;
    }
  } else if (fixesEvent_ != 0 && kind == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto* selection = static_cast<const xcb_xfixes_selection_notify_event_t*>(message);
    if (selection->selection == compositorAtom_) composited = selection->owner != XCB_WINDOW_NONE;
  }
  if (composited == isComposited_ && covered == isCovered_) return false;
  isComposited_ = composited;
  isCovered_ = covered;
  changed_();
  return false;
}

}  // namespace kestrow::qt
