// The main thread as Qt's event loop runs it.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

#include "KestrowCore/MainThread.hpp"

namespace kestrow::qt {

// Made on the main thread after the application object. Whatever posts from other threads ends
// before it.
class QtMainThread final : public MainThread {
 public:
  // Waits up to this long end to the millisecond, never early. Longer ones, which nobody watches
  // ending, may be up to half a second off, so that the machine wakes once for several of them.
  static constexpr Seconds longestPreciseDelay{10};

  void post(std::function<void()> action) override;
  std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) override;

 private:
  QObject context_;  // posted actions go with it
};

}  // namespace kestrow::qt
