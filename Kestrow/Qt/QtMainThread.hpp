// The main thread as Qt's event loop runs it.
#pragma once

#include "KestrowCore/MainThread.hpp"

#include <QObject>

#include <functional>
#include <memory>

namespace kestrow::qt {

// Made on the main thread after the application object. Whatever posts from other threads ends
// before it.
class QtMainThread final : public MainThread {
 public:
  void post(std::function<void()> action) override;
  std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) override;

 private:
  QObject context_;  // posted actions go with it
};

}  // namespace kestrow::qt
