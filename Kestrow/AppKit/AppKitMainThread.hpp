// The main thread as the system's main queue runs it.
#pragma once

#include "KestrowCore/MainThread.hpp"

#include <functional>
#include <memory>

namespace kestrow::appkit {

// Waits up to longestPreciseDelay keep the system from slowing the program's timers down meanwhile,
// as it does with programs that nobody looks at: an alert is over on time. Longer ones do not, so
// between polls the machine may rest.
class AppKitMainThread final : public MainThread {
 public:
  void post(std::function<void()> action) override;
  std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) override;
};

}  // namespace kestrow::appkit
