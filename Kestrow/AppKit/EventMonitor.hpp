// Watches events on their way, for as long as it lives.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

namespace kestrow::appkit {

inline constexpr NSEventMask mouseDowns = NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown;
inline constexpr NSEventMask keyDowns = NSEventMaskKeyDown;
inline constexpr unsigned short escapeKeyCode = 53;

// Main thread only. Movable.
class EventMonitor {
 public:
  // Events that go to other programs. Key events would need the user's leave; mouse events do not.
  static EventMonitor ofOthers(NSEventMask mask, std::function<void()> action);

  // Events that go to this program; the action says whether it keeps the event.
  static EventMonitor ofOwn(NSEventMask mask, std::function<bool(NSEvent* _Nonnull)> keeps);

  EventMonitor(EventMonitor&& other) noexcept;
  EventMonitor& operator=(EventMonitor&& other) noexcept;
  EventMonitor(const EventMonitor&) = delete;
  EventMonitor& operator=(const EventMonitor&) = delete;
  ~EventMonitor();

 private:
  explicit EventMonitor(id _Nullable token) : token_(token) {}

  id _Nullable token_;
};

}  // namespace kestrow::appkit
