#include "Kestrow/AppKit/EventMonitor.hpp"

#include <utility>

namespace kestrow::appkit {

// What a handler runs may end its monitor, and the handler with it: it runs a copy of its own.

EventMonitor EventMonitor::ofOthers(NSEventMask mask, std::function<void()> action) {
  return EventMonitor([NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                             handler:^(NSEvent* /*event*/) {
                                                               const auto own = action;
                                                               own();
                                                             }]);
}

EventMonitor EventMonitor::ofOwn(NSEventMask mask, std::function<bool(NSEvent*)> keeps) {
  return EventMonitor([NSEvent
      addLocalMonitorForEventsMatchingMask:mask
                                   handler:^NSEvent* _Nullable(NSEvent* event) {
                                     const auto own = keeps;
                                     return own(event) ? nil : event;
                                   }]);
}

EventMonitor::EventMonitor(EventMonitor&& other) noexcept
    : token_(std::exchange(other.token_, nil)) {}

EventMonitor& EventMonitor::operator=(EventMonitor&& other) noexcept {
  std::swap(token_, other.token_);
  return *this;
}

EventMonitor::~EventMonitor() {
  if (id token = token_) [NSEvent removeMonitor:token];
}

}  // namespace kestrow::appkit
