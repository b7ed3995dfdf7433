// The canvas on a QPainter. Turns the y axis; draws crisply at every scale.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"

#include <QPainter>
#include <QPainterPath>

namespace kestrow::qt {

class QtCanvas final : public Canvas {
 public:
  // The painter's origin is the top left corner of `bounds`, its unit a point, of `scale` pixels.
  QtCanvas(QPainter& painter, const Rect& bounds, double scale);

  void fill(const Path& path, const Color& color) override;
  void fillGradient(const Path& path, const Color& start, const Color& end,
                    double angleDegrees) override;
  void stroke(const Path& path, const Color& color, double lineWidth) override;
  void drawText(const AttributedText& text, Point at, Anchor anchor) override;
  void pushClip(const Path& path) override;
  void popClip() override;

 private:
  QPointF map(Point point) const;
  QPainterPath map(const Path& path) const;

  QPainter& painter_;
  Rect bounds_;
  double scale_;
};

}  // namespace kestrow::qt
