#include "Kestrow/Qt/QtDesktop.hpp"

#include "Kestrow/Qt/Announcer.hpp"
#include "Kestrow/Qt/QtAccessiblePanel.hpp"
#include "Kestrow/Qt/QtAccessiblePill.hpp"
#include "Kestrow/Qt/QtPanelWindow.hpp"

#include <QApplication>
#include <QDBusConnection>
#include <syslog.h>

#include <chrono>
#include <utility>

namespace kestrow::qt {

QtDesktop::QtDesktop(SingleInstance& instance)
    : instance_(instance), seenChanged_(session_.changed.subscribe([this] {
        if (pill_) pill_->setScreenSeen(session_.isSeen());
      })) {
  installAccessiblePill();
  installAccessiblePanel();
  begin_.setSingleShot(true);
}

QtDesktop::~QtDesktop() = default;

void QtDesktop::afterFirstPicture(std::function<void()> action) {
  // A pill that is covered by another window is not painted.
  constexpr std::chrono::seconds longest(1);
  QObject::connect(&begin_, &QTimer::timeout, [this, action = std::move(action)] {
    firstPainted_ = {};
    action();
  });
  begin_.start(pill_ && pill_->isVisible() ? longest : std::chrono::seconds(0));
  // The picture is sent when painting it is over.
  if (pill_) firstPainted_ = pill_->firstPainted.subscribe([this] { begin_.start(0); });
}

void QtDesktop::watch() {
  session_.watch(QDBusConnection::sessionBus(), QDBusConnection::systemBus());
  motion_.watch(QDBusConnection::sessionBus());
  sleep_.watch();
}

std::vector<Screen> QtDesktop::screens() const {
  return ScreenWatcher::screens();
}

Subscription QtDesktop::onScreensChanged(std::function<void()> action) {
  return screens_.changed.subscribe(std::move(action));
}

std::unique_ptr<PillSurface> QtDesktop::makePillSurface(PillSurfaceClient& client) {
  auto window = std::make_unique<QtPillWindow>(client);
  window->setScreenSeen(session_.isSeen());
  pill_ = window.get();
  return window;
}

std::unique_ptr<PanelSurface> QtDesktop::makePanelSurface(PanelSurfaceClient& client) {
  return std::make_unique<QtPanelWindow>(client);
}

Subscription QtDesktop::onReduceMotionChanged(std::function<void()> action) {
  return motion_.changed.subscribe(std::move(action));
}

void QtDesktop::announce(std::string_view text) {
  qt::announce(text);
}

Subscription QtDesktop::onWillSleep(std::function<void()> action) {
  return sleep_.willSleep.subscribe(std::move(action));
}

Subscription QtDesktop::onDidWake(std::function<void()> action) {
  return sleep_.didWake.subscribe(std::move(action));
}

Subscription QtDesktop::onReopen(std::function<void()> action) {
  return instance_.reopened.subscribe(std::move(action));
}

Subscription QtDesktop::onClockChanged(std::function<void()> action) {
  return clock_.changed.subscribe(std::move(action));
}

void QtDesktop::log(std::string_view line) {
  syslog(LOG_USER | LOG_INFO, "%.*s", static_cast<int>(line.size()), line.data());
}

void QtDesktop::quit() {
  QApplication::quit();
}

}  // namespace kestrow::qt
