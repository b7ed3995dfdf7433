#include "Kestrow/Qt/ClockWatcher.hpp"

#include <QFileInfo>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>

namespace kestrow::qt {

ClockWatcher::ClockWatcher(const QString& systemFolder)
    : timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      timeZonePath_(systemFolder + QStringLiteral("/localtime")),
      timeZone_(look()) {
  if (timer_ >= 0 && arm()) {
    notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &ClockWatcher::clockWasSet);
  }
  // The file is put in place anew, so its folder is what can be watched.
  systemFolder_.addPath(systemFolder);
  connect(&systemFolder_, &QFileSystemWatcher::directoryChanged, this,
          &ClockWatcher::systemFolderChanged);
}

ClockWatcher::TimeZoneFile ClockWatcher::look() const {
  const QFileInfo file(timeZonePath_);
  return {file.symLinkTarget(), file.lastModified()};
}

ClockWatcher::~ClockWatcher() {
  notifier_.reset();
  if (timer_ >= 0) close(timer_);
}

// A timer that never ends in a lifetime, but is cancelled when the clock it counts by is set.
bool ClockWatcher::arm() const {
  itimerspec never{};
  never.it_value.tv_sec = std::numeric_limits<std::int32_t>::max();
  return timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr) == 0;
}

void ClockWatcher::clockWasSet() {
  std::uint64_t ends = 0;
  const bool wasSet = read(timer_, &ends, sizeof ends) < 0 && errno == ECANCELED;
  if (!arm()) notifier_->setEnabled(false);
  if (wasSet) changed.notify();
}

void ClockWatcher::systemFolderChanged() {
  const TimeZoneFile timeZone = look();
  if (timeZone == timeZone_) return;
  timeZone_ = timeZone;
  changed.notify();
}

}  // namespace kestrow::qt
