#include "Kestrow/Qt/ReduceMotionSetting.hpp"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace kestrow::qt {
namespace {

QString portal() {
  return QStringLiteral("org.freedesktop.portal.Desktop");
}
QString portalPath() {
  return QStringLiteral("/org/freedesktop/portal/desktop");
}
QString settings() {
  return QStringLiteral("org.freedesktop.portal.Settings");
}

QString appearanceSpace() {
  return QStringLiteral("org.freedesktop.appearance");
}
QString gnomeSpace() {
  return QStringLiteral("org.gnome.desktop.interface");
}
QString kdeSpace() {
  return QStringLiteral("org.kde.kdeglobals.KDE");
}

}  // namespace

void ReduceMotionSetting::watch(QDBusConnection bus) {
  bus_ = std::move(bus);
  if (!bus_.isConnected()) return;
  // Qt's bus library knows this type only once something has used it, and until then connects no
  // slot that takes it.
  qRegisterMetaType<QDBusVariant>();
  auto* watcher =
      new QDBusServiceWatcher(portal(), bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &ReduceMotionSetting::readAll);
  connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, &ReduceMotionSetting::forget);
  bus_.connect(portal(), portalPath(), settings(), QStringLiteral("SettingChanged"), this,
               SLOT(settingChanged(QString, QString, QDBusVariant)));
  readAll();
}

void ReduceMotionSetting::readAll() {
  auto call =
      QDBusMessage::createMethodCall(portal(), portalPath(), settings(), QStringLiteral("ReadAll"));
  call << QStringList{appearanceSpace(), gnomeSpace(), kdeSpace()};
  auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    pending->deleteLater();
    const QDBusMessage reply = pending->reply();
    if (reply.type() != QDBusMessage::ReplyMessage ||
        reply.signature() != QLatin1String("a{sa{sv}}")) {
      return;
    }
    const auto spaces = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    for (auto space = spaces.cbegin(); space != spaces.cend(); ++space) {
      for (auto entry = space->cbegin(); entry != space->cend(); ++entry) {
        values_[{space.key(), entry.key()}] = entry.value();
      }
    }
    decide();
  });
}

void ReduceMotionSetting::settingChanged(const QString& space, const QString& key,
                                         const QDBusVariant& value) {
  values_[{space, key}] = value.variant();
  decide();
}

void ReduceMotionSetting::forget() {
  values_.clear();
  decide();
}

// Any one of them being on is the user asking for less motion.
void ReduceMotionSetting::decide() {
  const auto value = [this](const QString& space, const char* key, const QVariant& otherwise) {
    const auto found = values_.find({space, QString::fromLatin1(key)});
    return found == values_.end() ? otherwise : found->second;
  };
  const bool isOn = value(appearanceSpace(), "reduced-motion", 0).toUInt() == 1 ||
                    !value(gnomeSpace(), "enable-animations", true).toBool() ||
                    value(kdeSpace(), "AnimationDurationFactor", 1.0).toDouble() == 0.0;
  if (isOn == isOn_) return;
  isOn_ = isOn;
  changed.notify();
}

}  // namespace kestrow::qt
