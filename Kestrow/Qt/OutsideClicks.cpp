#include "Kestrow/Qt/OutsideClicks.hpp"

#include "Kestrow/Qt/X11.hpp"

#include <QApplication>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QWidget>
#include <QWindow>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <set>
#include <utility>

namespace kestrow::qt {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

std::set<xcb_window_t> ownWindows() {
  std::set<xcb_window_t> windows;
  for (const auto* window : QGuiApplication::topLevelWindows()) {
    if (window->handle()) windows.insert(static_cast<xcb_window_t>(window->winId()));
  }
  return windows;
}

}  // namespace

void OutsideClicks::Disconnect::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

OutsideClicks::OutsideClicks(std::function<void()> clicked) : clicked_(std::move(clicked)) {
  if (!qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) return;
  int screen = 0;
  connection_.reset(xcb_connect(nullptr, &screen));
  auto* const x = connection_.get();
  if (xcb_connection_has_error(x) != 0) return;

  // Presses are reported from protocol 2.1 on whoever holds the pointer.
  const x11::Reply<xcb_input_xi_query_version_reply_t> version(
      xcb_input_xi_query_version_reply(x, xcb_input_xi_query_version(x, 2, 2), nullptr));
  const auto* extension = xcb_get_extension_data(x, &xcb_input_id);
  if (!version || !extension || extension->present == 0) return;
  extension_ = extension->major_opcode;

  auto screens = xcb_setup_roots_iterator(xcb_get_setup(x));
  for (int i = 0; i < screen && screens.rem > 1; ++i) xcb_screen_next(&screens);
  root_ = screens.data->root;

  struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } const wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
  xcb_input_xi_select_events(x, root_, 1, &wanted.head);
  xcb_flush(x);

  auto* notifier = new QSocketNotifier(xcb_get_file_descriptor(x), QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
    if (xcb_connection_has_error(connection_.get()) != 0) {
      notifier->setEnabled(false);  // the display has gone
    } else {
      readEvents();
    }
  });
}

OutsideClicks::~OutsideClicks() = default;

void OutsideClicks::readEvents() {
  bool isPressed = false;
  while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    if ((event->response_type & 0x7FU) != XCB_GE_GENERIC) continue;
    // NOLINTNEXTLINE(*-reinterpret-cast): the protocol's events share their beginning
    const auto* press = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event.get());
    if (press->extension != extension_ || press->event_type != XCB_INPUT_RAW_BUTTON_PRESS) continue;
    isPressed |= press->detail == leftButton || press->detail == rightButton;
  }
  // A press beside an open list closes the list alone.
  if (!isPressed || QApplication::activePopupWidget() || isOverOwnWindow()) return;
  clicked_();
}

// Follows the pointer from the root window down to the window that it is in.
bool OutsideClicks::isOverOwnWindow() const {
  const auto own = ownWindows();
  for (xcb_window_t window = root_; window != XCB_WINDOW_NONE;) {
    if (own.contains(window)) return true;
    const x11::Reply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        connection_.get(), xcb_query_pointer(connection_.get(), window), nullptr));
    window = pointer ? pointer->child : xcb_window_t{XCB_WINDOW_NONE};
  }
  return false;
}

}  // namespace kestrow::qt
