// Whether anybody can see the screen: not while the session is locked or the screen is blanked or
// switched off.
#pragma once

#include "KestrowCore/Subscription.hpp"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace kestrow::qt {

// Told by the login service over the system bus, by the desktop's screen saver over the session bus
// and by the X display, which blanks the screen also when it switches the monitors off. Where none
// of them tells, the screen counts as seen.
class SessionWatcher final : public QObject, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  SessionWatcher() = default;
  SessionWatcher(const SessionWatcher&) = delete;
  SessionWatcher& operator=(const SessionWatcher&) = delete;
  ~SessionWatcher() override;

  // Begins to listen.
  void watch(QDBusConnection sessionBus, QDBusConnection systemBus);

  bool isSeen() const { return !isLocked_ && !isSaved_ && !isBlanked_; }
  Signal changed;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private Q_SLOTS:
  void sessionChanged(const QString& interface, const QVariantMap& values,
                      const QStringList& invalidated);
  void screenSaverChanged(bool active);

 private:
  void readLock();
  void watchDisplay();
  void set(bool& field, bool value);

  QDBusConnection systemBus_{QString()};
  bool isLocked_ = false;
  bool isSaved_ = false;    // as the desktop's screen saver says
  bool isBlanked_ = false;  // as the X display says
  int blankEvent_ = 0;
};

}  // namespace kestrow::qt
