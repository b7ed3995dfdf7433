// The pill's status dot: its picture, and its pulse, which repaints the dot's rectangle and nothing
// else and runs only while somebody can see it.
#pragma once

#include "Kestrow/Platform/PillSurface.hpp"

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <QTimer>

#include <functional>
#include <optional>

namespace kestrow::qt {

class QtDot {
 public:
  static constexpr int framesPerSecond = 20;

  // `repaint` paints the area again, at once; it is called on every frame of the pulse.
  explicit QtDot(std::function<void()> repaint);

  // A pulse that goes on keeps its beat. The area is to be painted again, and where it was before.
  void show(const std::optional<DotAppearance>& dot);

  // The pulse stands still while nobody sees it. True when it started or stopped: the area is to be
  // painted again.
  bool setSeen(bool seen);
  bool pulses() const { return dot_ && dot_->pulses; }
  bool isRunning() const { return timer_.isActive(); }

  // The area that it paints in, light included, in points from the top left of these bounds. Empty
  // when there is no dot.
  QRect area(const Rect& bounds) const;
  void paint(QPainter& painter, const Rect& bounds, double scale);

  // How far one beat has come after `sinceStart`: 0 at its start, 1 at the turn, 0 at its end.
  double progress(Seconds sinceStart) const;

 private:
  bool update();
  void makePictures(double scale);
  QPointF centre(const Rect& bounds) const;

  std::function<void()> repaint_;
  std::optional<DotAppearance> dot_;
  bool seen_ = true;
  QTimer timer_;
  QElapsedTimer clock_;
  QEasingCurve easing_{QEasingCurve::BezierSpline};
  double picturesScale_ = 0;
  QImage disc_;
  QImage light_;
};

}  // namespace kestrow::qt
