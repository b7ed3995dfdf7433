#include "Kestrow/Qt/SessionWatcher.hpp"

#include "Kestrow/Qt/X11.hpp"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <xcb/screensaver.h>

#include <utility>

namespace kestrow::qt {
namespace {

QString properties() {
  return QStringLiteral("org.freedesktop.DBus.Properties");
}
QString session() {
  return QStringLiteral("org.freedesktop.login1.Session");
}

}  // namespace

SessionWatcher::~SessionWatcher() {
  if (blankEvent_ != 0) qApp->removeNativeEventFilter(this);
}

void SessionWatcher::watch(QDBusConnection sessionBus, QDBusConnection systemBus) {
  for (const auto* screenSaver : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) {
    sessionBus.connect(QString(), QString(), QString::fromLatin1(screenSaver),
                       QStringLiteral("ActiveChanged"), this, SLOT(screenSaverChanged(bool)));
  }
  watchDisplay();
  systemBus_ = std::move(systemBus);
  if (!systemBus_.isConnected()) return;
  // Of every session: which one is ours the login service knows, and is asked below.
  systemBus_.connect(QString(), QString(), properties(), QStringLiteral("PropertiesChanged"),
                     {session()}, QString(), this,
                     SLOT(sessionChanged(QString, QVariantMap, QStringList)));
  readLock();
}

void SessionWatcher::sessionChanged(const QString& /*interface*/, const QVariantMap& /*values*/,
                                    const QStringList& /*invalidated*/) {
  readLock();
}

void SessionWatcher::readLock() {
  auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.login1"),
                                             QStringLiteral("/org/freedesktop/login1/session/auto"),
                                             properties(), QStringLiteral("Get"));
  call << session() << QStringLiteral("LockedHint");
  call.setAutoStartService(false);
  auto* pending = new QDBusPendingCallWatcher(systemBus_.asyncCall(call), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    pending->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *pending;
    set(isLocked_, reply.isValid() && reply.value().variant().toBool());
  });
}

void SessionWatcher::screenSaverChanged(bool active) {
  set(isSaved_, active);
}

void SessionWatcher::watchDisplay() {
  auto* const x = x11::connection();
  const auto* saver = x ? xcb_get_extension_data(x, &xcb_screensaver_id) : nullptr;
  if (!saver || saver->present == 0) return;
  blankEvent_ = saver->first_event + XCB_SCREENSAVER_NOTIFY;
  qApp->installNativeEventFilter(this);
  xcb_screensaver_select_input(x, x11::root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
  const auto cookie = xcb_screensaver_query_info(x, x11::root());
  const x11::Reply<xcb_screensaver_query_info_reply_t> now(
      xcb_screensaver_query_info_reply(x, cookie, nullptr));
  set(isBlanked_, now && now->state == XCB_SCREENSAVER_STATE_ON);
}

bool SessionWatcher::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  const auto* event = x11::event(type, message);
  if (!event || x11::kind(*event) != blankEvent_) return false;
  const auto* change = static_cast<const xcb_screensaver_notify_event_t*>(message);
  set(isBlanked_, change->state == XCB_SCREENSAVER_STATE_ON);
  return false;
}

void SessionWatcher::set(bool& field, bool value) {
  const bool before = isSeen();
  field = value;
  if (isSeen() != before) changed.notify();
}

}  // namespace kestrow::qt
