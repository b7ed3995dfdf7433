// What Qt does not tell about a window under X11: whether the desktop composites, and whether
// another window covers this one whole. On other window systems it composites and nothing covers.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QImage>
#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace kestrow::qt {

// Whether the desktop composites now, for a window that is about to be drawn once.
bool isDesktopComposited();

class X11Window final : public QAbstractNativeEventFilter {
 public:
  // Watches the widget's window, which exists from here on and which no window manager frames.
  // `changed` is called when either answer changes. The widget outlives it.
  X11Window(QWidget& widget, std::function<void()> changed);
  X11Window(const X11Window&) = delete;
  X11Window& operator=(const X11Window&) = delete;
  ~X11Window() override;

  bool isComposited() const { return isComposited_; }
  bool isCovered() const { return isCovered_; }

  // Cuts the window to where the picture, in its pixels, is at least half opaque.
  void shape(const QImage& picture) const;
  // The whole rectangle again.
  void unshape() const;

  // Looks for covering windows from here on, or no more. Looking, the program wakes when any window
  // of the desktop comes, goes or moves; not looking, nothing covers.
  void lookForCover(bool look);

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  void watchCompositor();
  bool findCover() const;
  void set(bool& answer, bool value);

  std::uint32_t window_ = 0;
  std::function<void()> changed_;
  std::uint32_t compositorAtom_ = 0;
  std::uint8_t fixesEvent_ = 0;
  bool isComposited_ = true;
  bool isLooking_ = false;
  bool isCovered_ = false;
  QTimer stackSettled_;  // windows move many times in a row
};

}  // namespace kestrow::qt
