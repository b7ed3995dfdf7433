// Notices when the wall clock is set and when the time zone changes.
#pragma once

#include "KestrowCore/Subscription.hpp"

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

namespace kestrow::qt {

// Sleeps until one of them happens. Also wakes after the machine slept, since the clock is set
// then. Where the system can't tell, it stays silent.
class ClockWatcher final : public QObject {
 public:
  // The folder is where the system says which time zone it is in, in the file "localtime".
  explicit ClockWatcher(const QString& systemFolder = QStringLiteral("/etc"));
  ClockWatcher(const ClockWatcher&) = delete;
  ClockWatcher& operator=(const ClockWatcher&) = delete;
  ~ClockWatcher() override;

  Signal changed;

 private:
  // The file is a link to the zone's rules, or a copy of them.
  struct TimeZoneFile {
    QString target;
    QDateTime written;
    bool operator==(const TimeZoneFile&) const = default;
  };

  TimeZoneFile look() const;
  bool arm() const;
  void clockWasSet();
  void systemFolderChanged();

  int timer_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
  QString timeZonePath_;
  TimeZoneFile timeZone_;
  QFileSystemWatcher systemFolder_;
};

}  // namespace kestrow::qt
