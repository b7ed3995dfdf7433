#include "Kestrow/Qt/X11Window.hpp"

#include "Kestrow/Qt/X11.hpp"

#include <QGuiApplication>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace kestrow::qt {

namespace {

using x11::connection;
using x11::Reply;
using x11::root;

// The selection that the compositor of the screen owns.
constexpr const char* compositorSelection = "_NET_WM_CM_S0";

bool hasOwner(xcb_atom_t selection) {
  auto* const x = connection();
  const Reply<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
  return owner && owner->owner != XCB_WINDOW_NONE;
}

bool holds(const xcb_get_geometry_reply_t& outer, const xcb_get_geometry_reply_t& inner) {
  return outer.x <= inner.x && outer.y <= inner.y &&
         outer.x + outer.width >= inner.x + inner.width &&
         outer.y + outer.height >= inner.y + inner.height;
}

// The answers about a window, asked for before the first is read.
struct Question {
  xcb_get_geometry_cookie_t geometry;
  xcb_get_window_attributes_cookie_t attributes;
};

bool isOpaqueOver(const Question& question, const xcb_get_geometry_reply_t& own) {
  constexpr int translucentDepth = 32;
  auto* const x = connection();
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(x, question.geometry, nullptr));
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(x, question.attributes, nullptr));
  return geometry && attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
         attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
         geometry->depth != translucentDepth && holds(*geometry, own);
}

}  // namespace

bool isDesktopComposited() {
  return !connection() || hasOwner(x11::atom(compositorSelection));
}

X11Window::X11Window(QWidget& widget, std::function<void()> changed)
    : changed_(std::move(changed)) {
  if (!connection()) return;
  window_ = static_cast<std::uint32_t>(widget.winId());
  stackSettled_.setSingleShot(true);
  stackSettled_.setInterval(100);
  QObject::connect(&stackSettled_, &QTimer::timeout, [this] { set(isCovered_, findCover()); });
  watchCompositor();
  qGuiApp->installNativeEventFilter(this);
}

X11Window::~X11Window() {
  if (window_ == 0 || !qGuiApp) return;
  lookForCover(false);
  qGuiApp->removeNativeEventFilter(this);
}

void X11Window::set(bool& answer, bool value) {
  if (std::exchange(answer, value) != value) changed_();
}

void X11Window::watchCompositor() {
  auto* const x = connection();
  compositorAtom_ = x11::atom(compositorSelection);
  isComposited_ = hasOwner(compositorAtom_);

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

void X11Window::shape(const QImage& picture) const {
  if (window_ == 0) return;
  constexpr int halfOpaque = 128;
  std::vector<xcb_rectangle_t> rows;
  for (int y = 0; y < picture.height(); ++y) {
    int left = 0;
    int right = picture.width();
    while (left < right && qAlpha(picture.pixel(left, y)) < halfOpaque) ++left;
    while (left < right && qAlpha(picture.pixel(right - 1, y)) < halfOpaque) --right;
    if (left == right) continue;
    rows.push_back({static_cast<std::int16_t>(left), static_cast<std::int16_t>(y),
                    static_cast<std::uint16_t>(right - left), 1});
  }
  xcb_shape_rectangles(connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                       XCB_CLIP_ORDERING_YX_SORTED, window_, 0, 0,
                       static_cast<std::uint32_t>(rows.size()), rows.data());
}

void X11Window::unshape() const {
  if (window_ == 0) return;
  xcb_shape_mask(connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0,
                 XCB_PIXMAP_NONE);
}

// X tells translucent windows that they are never obscured, so the stack itself is looked at.
void X11Window::lookForCover(bool look) {
  if (window_ == 0 || look == isLooking_) return;
  isLooking_ = look;
  auto* const x = connection();
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, root()), nullptr));
  if (!attributes) return;
  // Beside the events that Qt asked for.
  const std::uint32_t others =
      attributes->your_event_mask & ~std::uint32_t{XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
  const std::uint32_t mask = look ? others | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : others;
  xcb_change_window_attributes(x, root(), XCB_CW_EVENT_MASK, &mask);
  xcb_flush(x);
  if (look) {
    stackSettled_.start();
  } else {
    stackSettled_.stop();
    isCovered_ = false;
  }
}

// Whether an opaque window higher in the stack lies over the whole of this one.
bool X11Window::findCover() const {
  auto* const x = connection();
  const Reply<xcb_query_tree_reply_t> all(
      xcb_query_tree_reply(x, xcb_query_tree(x, root()), nullptr));
  const Reply<xcb_get_geometry_reply_t> own(
      xcb_get_geometry_reply(x, xcb_get_geometry(x, window_), nullptr));
  if (!all || !own) return false;
  const std::span windows(xcb_query_tree_children(all.get()),
                          static_cast<std::size_t>(xcb_query_tree_children_length(all.get())));
  const auto place = std::find(windows.begin(), windows.end(), window_);
  if (place == windows.end()) return false;
  std::vector<Question> questions;
  for (const auto window : std::span(place + 1, windows.end())) {
    questions.push_back({xcb_get_geometry(x, window), xcb_get_window_attributes(x, window)});
  }
  // Every answer is read, also after the first that covers: none may stay behind.
  return std::count_if(questions.begin(), questions.end(),
                       [&](const Question& question) { return isOpaqueOver(question, *own); }) > 0;
}

bool X11Window::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  const auto* event = x11::event(type, message);
  if (!event) return false;
  const int kind = x11::kind(*event);
  if (kind == XCB_MAP_NOTIFY || kind == XCB_UNMAP_NOTIFY || kind == XCB_CONFIGURE_NOTIFY) {
    // The three begin alike.
    const auto* change = static_cast<const xcb_map_notify_event_t*>(message);
    if (isLooking_ && change->event == root() && !stackSettled_.isActive()) stackSettled_.start();
  } else if (fixesEvent_ != 0 && kind == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto* selection = static_cast<const xcb_xfixes_selection_notify_event_t*>(message);
    if (selection->selection == compositorAtom_) {
      set(isComposited_, selection->owner != XCB_WINDOW_NONE);
    }
  }
  return false;
}

}  // namespace kestrow::qt
