// A message bus of the test's own, and waiting for what arrives over it.
#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

namespace kestrow::qt {

// Runs the event loop until the condition holds; false when it does not within ten seconds.
inline bool eventually(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(10'000);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
  }
  return true;
}

// Ends with the object. Connections to it are closed before.
class PrivateBus {
 public:
  PrivateBus() {
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"),
                   QStringLiteral("--nopidfile"), QStringLiteral("--print-address")});
    daemon_.waitForReadyRead();
    address_ = QString::fromLatin1(daemon_.readLine()).trimmed();
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() {
    for (const QString& name : names_) QDBusConnection::disconnectFromBus(name);
    daemon_.kill();
    daemon_.waitForFinished();
  }

  // A connection of this name, as another process would have it.
  QDBusConnection connection(const QString& name) {
    if (!names_.contains(name)) names_.append(name);
    return QDBusConnection::connectToBus(address_, name);
  }

 private:
  QProcess daemon_;
  QString address_;
  QStringList names_;
};

}  // namespace kestrow::qt
