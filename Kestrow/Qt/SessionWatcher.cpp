#include "Kestrow/Qt/SessionWatcher.hpp"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
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

SessionWatcher::SessionWatcher(QDBusConnection sessionBus, QDBusConnection systemBus)
    : systemBus_(std::move(systemBus)) {
  for (const auto* screenSaver : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) {
    sessionBus.connect(QString(), QString(), QString::fromLatin1(screenSaver),
                       QStringLiteral("ActiveChanged"), this, SLOT(screenSaverChanged(bool)));
  }
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
  set(isBlanked_, active);
}

void SessionWatcher::set(bool& field, bool value) {
  const bool before = isSeen();
  field = value;
  if (isSeen() != before) changed.notify();
}

}  // namespace kestrow::qt
