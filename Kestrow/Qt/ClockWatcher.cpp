#include "Kestrow/Qt/ClockWatcher.hpp"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <limits>

namespace kestrow::qt {
namespace {

constexpr auto systemFolder = "/etc";
constexpr auto timeZoneLink = "/etc/localtime";

QString currentTimeZoneFile() {
  return QFile::symLinkTarget(QString::fromLatin1(timeZoneLink));
}

}  // namespace

ClockWatcher::ClockWatcher()
    : timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      timeZoneFile_(currentTimeZoneFile()) {
  if (timer_ >= 0 && arm()) {
    notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &ClockWatcher::clockWasSet);
  }
  // The zone is a link that is put in place anew, so its folder is what can be watched.
  systemFolder_.addPath(QString::fromLatin1(systemFolder));
  connect(&systemFolder_, &QFileSystemWatcher::directoryChanged, this,
          &ClockWatcher::systemFolderChanged);
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
  const QString file = currentTimeZoneFile();
  if (file == timeZoneFile_) return;
  timeZoneFile_ = file;
  tzset();
  changed.notify();
}

}  // namespace kestrow::qt
