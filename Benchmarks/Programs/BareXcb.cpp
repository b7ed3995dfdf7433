// The least that any program with a window is, beside which a toolkit's own share shows.
#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>

int main() {
  xcb_connection_t* const display = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(display) != 0) return 1;
  const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(display)).data;
  const xcb_window_t window = xcb_generate_id(display);
  // Values in the order of their bits.
  const std::array<std::uint32_t, 3> values{screen->white_pixel, 1, XCB_EVENT_MASK_EXPOSURE};
  xcb_create_window(display, XCB_COPY_FROM_PARENT, window, screen->root, 540, 0, 200, 24, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                    values.data());
  xcb_map_window(display, window);
  xcb_flush(display);
  while (xcb_generic_event_t* const event = xcb_wait_for_event(display)) std::free(event);
  xcb_disconnect(display);
}
