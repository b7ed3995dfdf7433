// Notices when the wall clock is set and when the time zone changes.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

#include "KestrowCore/Subscription.hpp"

namespace kestrow::qt {

// Sleeps until one of them happens. Also wakes after the machine slept, since the clock is set
// then. Where the system can't tell, it stays silent.
class ClockWatcher final : public QObject {
 public:
  ClockWatcher();
  ClockWatcher(const ClockWatcher&) = delete;
  ClockWatcher& operator=(const ClockWatcher&) = delete;
  ~ClockWatcher() override;

  Signal changed;

 private:
  bool arm() const;
  void clockWasSet();
  void systemFolderChanged();

  int timer_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
  QFileSystemWatcher systemFolder_;
  QString timeZoneFile_;
};

}  // namespace kestrow::qt
