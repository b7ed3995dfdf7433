// Whether anybody can see the screen: not while the session is locked or the screen is blanked.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include "KestrowCore/Subscription.hpp"

namespace kestrow::qt {

// Told by the login service over the system bus and by the desktop's screen saver over the session
// bus. Where neither tells, the screen counts as seen.
class SessionWatcher final : public QObject {
  Q_OBJECT

 public:
  SessionWatcher(QDBusConnection sessionBus, QDBusConnection systemBus);

  bool isSeen() const { return !isLocked_ && !isBlanked_; }
  Signal changed;

 private Q_SLOTS:
  void sessionChanged(const QString& interface, const QVariantMap& values,
                      const QStringList& invalidated);
  void screenSaverChanged(bool active);

 private:
  void readLock();
  void set(bool& field, bool value);

  QDBusConnection systemBus_;
  bool isLocked_ = false;
  bool isBlanked_ = false;
};

}  // namespace kestrow::qt
