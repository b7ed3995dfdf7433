#include "Kestrow/Qt/QtCanvas.hpp"

#include "Kestrow/Qt/QtText.hpp"

#include <QLinearGradient>
#include <QPen>

#include <cmath>
#include <numbers>
#include <variant>

namespace kestrow::qt {

namespace {

// An arc's angle from start to end, counter-clockwise positive, in the direction asked for.
double sweep(const Path::Arc& arc) {
  double angle = std::fmod(arc.endAngle - arc.startAngle, 360);
  if (!arc.clockwise && angle < 0) angle += 360;
  if (arc.clockwise && angle > 0) angle -= 360;
  return angle;
}

}  // namespace

QtCanvas::QtCanvas(QPainter& painter, const Rect& bounds, double scale)
    : painter_(painter), bounds_(bounds), scale_(scale) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
}

QPointF QtCanvas::map(Point point) const {
  return {point.x - bounds_.minX(), bounds_.maxY() - point.y};
}

QPainterPath QtCanvas::map(const Path& path) const {
  QPainterPath result;
  for (const auto& step : path.steps) {
    if (const auto* move = std::get_if<Path::MoveTo>(&step)) {
      result.moveTo(map(move->to));
    } else if (const auto* line = std::get_if<Path::LineTo>(&step)) {
      result.lineTo(map(line->to));
    } else if (const auto* arc = std::get_if<Path::Arc>(&step)) {
      const QPointF centre = map(arc->centre);
      const QRectF circle(centre.x() - arc->radius, centre.y() - arc->radius, arc->radius * 2,
                          arc->radius * 2);
      if (result.elementCount() == 0) result.arcMoveTo(circle, arc->startAngle);
      result.arcTo(circle, arc->startAngle, sweep(*arc));
    } else {
      result.closeSubpath();
    }
  }
  return result;
}

void QtCanvas::fill(const Path& path, const Color& color) {
  painter_.fillPath(map(path), toQt(color));
}

void QtCanvas::fillGradient(const Path& path, const Color& start, const Color& end,
                            double angleDegrees) {
  const QPainterPath mapped = map(path);
  const QRectF box = mapped.boundingRect();
  const double angle = angleDegrees * std::numbers::pi / 180;
  const QPointF direction(std::cos(angle), -std::sin(angle));
  const double reach =
      std::abs(direction.x()) * box.width() * 0.5 + std::abs(direction.y()) * box.height() * 0.5;
  QLinearGradient gradient(box.center() - direction * reach, box.center() + direction * reach);
  gradient.setColorAt(0, toQt(start));
  gradient.setColorAt(1, toQt(end));
  painter_.fillPath(mapped, gradient);
}

void QtCanvas::stroke(const Path& path, const Color& color, double lineWidth) {
  painter_.strokePath(map(path),
                      QPen(toQt(color), lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
}

void QtCanvas::drawText(const AttributedText& text, Point at, Anchor anchor) {
  const TextLine line(text);
  const Point origin = anchor.origin(at, line.size());
  const QPointF topLeft = map({origin.x, origin.y + line.size().height});
  // Letters are crisp on a pixel's edge.
  const double baseline = std::round((topLeft.y() + line.baseline()) * scale_) / scale_;
  line.draw(painter_, {topLeft.x(), baseline}, scale_);
}

void QtCanvas::pushClip(const Path& path) {
  painter_.save();
  painter_.setClipPath(map(path), Qt::IntersectClip);
}

void QtCanvas::popClip() {
  painter_.restore();
}

}  // namespace kestrow::qt
