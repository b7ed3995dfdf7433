#include "Kestrow/Qt/SleepWatcher.hpp"

#include <QString>

#include <chrono>

namespace kestrow::qt {
namespace {

// A connection of its own: Qt's shared one could not be opened again after the bus went away.
QString connectionName() {
  return QStringLiteral("kestrow-system");
}

}  // namespace

SleepWatcher::SleepWatcher() {
  retry_.setSingleShot(true);
  retry_.setInterval(std::chrono::seconds(5));
  connect(&retry_, &QTimer::timeout, this, &SleepWatcher::connectToBus);
}

SleepWatcher::~SleepWatcher() {
  QDBusConnection::disconnectFromBus(connectionName());
}

// A bus that was never there is not looked for: such a system has none.
void SleepWatcher::connectToBus() {
  const bool isRetry = sender() == &retry_;
  auto bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName());
  if (!bus.isConnected()) {
    QDBusConnection::disconnectFromBus(connectionName());
    if (isRetry) retry_.start();
    return;
  }
  bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
              QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
              this, SLOT(prepareForSleep(bool)));
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
              SLOT(disconnected()));
}

void SleepWatcher::prepareForSleep(bool starts) {
  (starts ? willSleep : didWake).notify();
}

void SleepWatcher::disconnected() {
  QDBusConnection::disconnectFromBus(connectionName());
  retry_.start();
}

}  // namespace kestrow::qt
