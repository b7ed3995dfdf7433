#include "Kestrow/Qt/ScreenWatcher.hpp"

#include "Kestrow/Qt/QtCoordinates.hpp"
#include "Kestrow/Qt/WorkArea.hpp"
#include "Kestrow/Qt/X11.hpp"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kestrow::qt {
namespace {

// The primary screen first. Without any screen Qt keeps an empty stand-in, which is none.
std::vector<const QScreen*> realScreens() {
  std::vector<const QScreen*> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen->geometry().isEmpty()) continue;
    const bool isPrimary = screen == QGuiApplication::primaryScreen();
    screens.insert(isPrimary ? screens.begin() : screens.end(), screen);
  }
  return screens;
}

// Qt counts a screen's size in points, and its place in pixels.
QRect inPixels(const QScreen& screen) {
  return {screen.geometry().topLeft(), screen.geometry().size() * screen.devicePixelRatio()};
}

QRectF inPoints(const QRect& area, const QScreen& screen) {
  const QRect pixels = inPixels(screen);
  const double scale = screen.devicePixelRatio();
  return {QPointF(pixels.topLeft()) + QPointF(area.topLeft() - pixels.topLeft()) / scale,
          QSizeF(area.size()) / scale};
}

// Qt honours the desktop's work area only where there is a single screen.
class FreeAreas {
 public:
  explicit FreeAreas(const std::vector<const QScreen*>& screens) {
    if (screens.size() < 2) return;
    isNeeded_ = true;
    told_ = shellWorkAreas();
    if (told_.empty()) struts_ = barStruts();
    for (const QScreen* screen : screens) {
      const QRect pixels = inPixels(*screen);
      display_ = display_.expandedTo({pixels.right() + 1, pixels.bottom() + 1});
    }
  }

  QRectF of(const QScreen& screen) const {
    if (!isNeeded_) return screen.availableGeometry();
    const QRect pixels = inPixels(screen);
    for (const QRect& area : told_) {
      if (pixels.contains(area)) return inPoints(area, screen);
    }
    return inPoints(workArea(pixels, display_, struts_), screen);
  }

 private:
  bool isNeeded_ = false;
  std::vector<QRect> told_;
  std::vector<Strut> struts_;
  QSize display_;
};

}  // namespace

ScreenWatcher::ScreenWatcher() : workAreaAtom_(x11::atom("_NET_WORKAREA")), seen_(look()) {
  settled_.setSingleShot(true);
  connect(&settled_, &QTimer::timeout, this, &ScreenWatcher::lookAgain);
  const auto start = [this] { settled_.start(0); };
  connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, start](QScreen* screen) {
    watch(screen);
    start();
  });
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, start);
  connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, start);
  for (const QScreen* screen : QGuiApplication::screens()) watch(screen);
  qGuiApp->installNativeEventFilter(this);
}

ScreenWatcher::~ScreenWatcher() {
  qGuiApp->removeNativeEventFilter(this);
}

void ScreenWatcher::watch(const QScreen* screen) {
  const auto start = [this] { settled_.start(0); };
  connect(screen, &QScreen::geometryChanged, this, start);
  connect(screen, &QScreen::availableGeometryChanged, this, start);
  connect(screen, &QScreen::logicalDotsPerInchChanged, this, start);
  connect(screen, &QScreen::physicalDotsPerInchChanged, this, start);
}

std::vector<Screen> ScreenWatcher::screens() {
  const auto attached = realScreens();
  std::vector<Screen> screens;
  if (attached.empty()) return screens;
  const QRectF primary = attached.front()->geometry();
  const FreeAreas freeAreas(attached);
  for (const QScreen* screen : attached) {
    const Rect frame = toPoints(screen->geometry(), primary);
    const Rect visible = toPoints(freeAreas.of(*screen), primary);
    screens.push_back({.info = {.frame = frame,
                                .auxiliaryTopLeftArea = {},
                                .auxiliaryTopRightArea = {},
                                .safeAreaTop = 0,
                                .menuBarHeight = 0},
                       .visibleFrame = visible});
  }
  return screens;
}

std::optional<Screen> ScreenWatcher::mainScreen() {
  const auto* window = QGuiApplication::focusWindow();
  if (!window) return std::nullopt;
  const auto attached = realScreens();
  const auto found = std::ranges::find(attached, window->screen());
  if (found == attached.end()) return std::nullopt;
  return screens()[static_cast<std::size_t>(found - attached.begin())];
}

ScreenWatcher::Seen ScreenWatcher::look() {
  Seen seen{screens(), {}};
  for (const QScreen* screen : realScreens()) seen.scales.push_back(screen->devicePixelRatio());
  return seen;
}

void ScreenWatcher::lookAgain() {
  Seen seen = look();
  if (seen == seen_) return;
  seen_ = std::move(seen);
  changed.notify();
}

// The window manager writes the work area to the root window, each time that a bar's claim changes.
// With several screens Qt hears of it but tells nobody.
bool ScreenWatcher::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  const auto* event = x11::event(type, message);
  if (!event || x11::kind(*event) != XCB_PROPERTY_NOTIFY) return false;
  const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
  if (change->atom == workAreaAtom_) settled_.start(0);
  return false;
}

}  // namespace kestrow::qt
