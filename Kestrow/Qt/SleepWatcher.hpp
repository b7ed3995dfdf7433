// Hears from the system's login service when the machine is about to sleep and when it woke.
#pragma once

#include "KestrowCore/Subscription.hpp"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

namespace kestrow::qt {

// Silent without a system bus; when the bus goes away it looks for it again every few seconds.
class SleepWatcher final : public QObject {
  Q_OBJECT

 public:
  SleepWatcher();
  ~SleepWatcher() override;

  // Begins to listen.
  void watch() { connectToBus(); }

  Signal willSleep;
  Signal didWake;

 private Q_SLOTS:
  void prepareForSleep(bool starts);
  void disconnected();

 private:
  void connectToBus();

  QTimer retry_;
};

}  // namespace kestrow::qt
