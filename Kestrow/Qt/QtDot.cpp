#include "Kestrow/Qt/QtDot.hpp"

#include "Kestrow/Qt/QtText.hpp"

#include <chrono>
#include <cmath>
#include <utility>

namespace kestrow::qt {

namespace {

// How far the light reaches beyond the dot: three deviations of its blur.
double reach(const DotAppearance& dot) {
  return std::ceil(dot.shadowRadius * 0.5 * 3);
}

QImage disc(const DotAppearance& dot, double margin, const QColor& color, double scale) {
  const QSizeF size((dot.frame.width + 2 * margin) * scale,
                    (dot.frame.height + 2 * margin) * scale);
  QImage picture(size.toSize(), QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF(margin, margin, dot.frame.width, dot.frame.height),
                          dot.cornerRadius, dot.cornerRadius);
  return picture;
}

}  // namespace

QtDot::QtDot(std::function<void()> repaint) : repaint_(std::move(repaint)) {
  // Slow at both ends.
  easing_.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
  timer_.setTimerType(Qt::CoarseTimer);
  timer_.setInterval(std::chrono::milliseconds(1000) / framesPerSecond);
  QObject::connect(&timer_, &QTimer::timeout, [this] { repaint_(); });
}

void QtDot::show(const std::optional<DotAppearance>& dot) {
  if (dot == dot_) return;
  dot_ = dot;
  picturesScale_ = 0;
  update();
}

bool QtDot::setSeen(bool seen) {
  seen_ = seen;
  return update();
}

bool QtDot::update() {
  const bool runs = seen_ && pulses();
  if (runs == timer_.isActive()) return false;
  if (runs) {
    clock_.start();
    timer_.start();
  } else {
    timer_.stop();
  }
  return true;
}

double QtDot::progress(Seconds sinceStart) const {
  const double beat = std::fmod(sinceStart / Pulse::duration, 2);
  return easing_.valueForProgress(beat <= 1 ? beat : 2 - beat);
}

QPointF QtDot::centre(const Rect& bounds) const {
  return {dot_->frame.midX() - bounds.minX(), bounds.maxY() - dot_->frame.midY()};
}

QRect QtDot::area(const Rect& bounds) const {
  if (!dot_) return {};
  const double half = dot_->frame.width * 0.5 + reach(*dot_);
  return QRectF(centre(bounds) - QPointF(half, half), QSizeF(half * 2, half * 2)).toAlignedRect();
}

void QtDot::makePictures(double scale) {
  if (picturesScale_ == scale) return;
  picturesScale_ = scale;
  disc_ = disc(*dot_, 1, toQt(dot_->color), scale);
  light_ = blurred(disc(*dot_, reach(*dot_), Qt::white, scale), dot_->shadowRadius * 0.5 * scale,
                   toQt(dot_->shadowColor));
}

void QtDot::paint(QPainter& painter, const Rect& bounds, double scale) {
  if (!dot_) return;
  makePictures(scale);
  double opacity = 1;
  double light = 1;
  if (timer_.isActive()) {
    const double at = progress(std::chrono::nanoseconds(clock_.nsecsElapsed()));
    opacity = std::lerp(1.0, Pulse::opacityTo, at);
    light = std::lerp(1.0, Pulse::shadowOpacityTo, at);
  } else {
    light = dot_->shadowOpacity;
  }
  const auto drawCentred = [&](const QImage& picture, double alpha) {
    const QSizeF size = picture.deviceIndependentSize();
    painter.setOpacity(alpha);
    painter.drawImage(centre(bounds) - QPointF(size.width() * 0.5, size.height() * 0.5), picture);
  };
  drawCentred(light_, opacity * light);
  drawCentred(disc_, opacity);
  painter.setOpacity(1);
}

}  // namespace kestrow::qt
