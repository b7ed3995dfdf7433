// The pill's window under Qt. On X11 no window manager has a say in it: that keeps it above bars
// and full-screen windows, on every workspace, and the keyboard where it was. A Wayland desktop
// gives clients no place of their own choosing, so there the program runs through XWayland; without
// it the window is a plain one that the compositor places.
#pragma once

#include "Kestrow/Platform/PillSurface.hpp"
#include "Kestrow/Qt/QtDot.hpp"
#include "Kestrow/Qt/X11Window.hpp"
#include "KestrowCore/Subscription.hpp"

#include <QImage>
#include <QVariantAnimation>
#include <QWidget>

#include <memory>
#include <optional>

namespace kestrow::qt {

// Not on the screen until it is ordered to the front.
class QtPillWindow final : public QWidget, public PillSurface {
  Q_OBJECT

 public:
  explicit QtPillWindow(PillSurfaceClient& client);
  ~QtPillWindow() override;

  // Where it is, or where it is moving to.
  Rect frame() const override;
  void setFrame(const Rect& frame, Seconds duration) override;
  void setDot(const std::optional<DotAppearance>& dot) override;
  void setNeedsDisplay() override;
  void accessibilityLabelChanged() override;
  void setSharing(bool readable) override;  // nothing keeps a window out of captures here
  void orderFront() override;

  // Nobody sees the pill while the session is locked or the screen is off.
  void setScreenSeen(bool seen);

  // It was painted for the first time.
  Signal firstPainted;

  // What a click does, for assistive technology.
  void press() { client_.click(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void place(const QRect& frame);
  Rect bounds() const;
  void drawPicture();
  void cutToShape();
  void updateSeen();

  PillSurfaceClient& client_;
  QRect target_;
  QVariantAnimation motion_;
  QtDot dot_;
  QRect dotArea_;
  QImage picture_;  // the pill without its dot, kept so that a pulse draws nothing anew
  bool pictureIsOld_ = true;
  bool wasPainted_ = false;
  bool screenSeen_ = true;
  std::unique_ptr<X11Window> x11_;
};

}  // namespace kestrow::qt
