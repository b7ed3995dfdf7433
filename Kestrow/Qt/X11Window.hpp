// What Qt does not tell about a window under X11: whether the desktop composites, and whether
// something covers the window whole. On other window systems it composites and is never covered.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace kestrow::qt {

class X11Window final : public QAbstractNativeEventFilter {
 public:
  // Watches the widget's window, which exists from here on. `changed` is called when either answer
  // changes. The widget outlives it.
  X11Window(QWidget& widget, std::function<void()> changed);
  X11Window(const X11Window&) = delete;
  X11Window& operator=(const X11Window&) = delete;
  ~X11Window() override;

  bool isComposited() const { return isComposited_; }
  bool isCovered() const { return isCovered_; }

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  void watchCompositor();
  void watchVisibility() const;

  std::uint32_t window_ = 0;
  std::function<void()> changed_;
  std::uint32_t compositorAtom_ = 0;
  std::uint8_t fixesEvent_ = 0;
  bool isComposited_ = true;
  bool isCovered_ = false;
};

}  // namespace kestrow::qt
