#include "Kestrow/AppKit/AppKitCanvas.hpp"

#import <AppKit/AppKit.h>

#include <variant>

#include "Kestrow/AppKit/AppKitText.hpp"
#include "Kestrow/AppKit/Coordinates.hpp"

namespace kestrow::appkit {

namespace {

struct Appender {
  NSBezierPath* path;

  void operator()(const Path::MoveTo& step) const { [path moveToPoint:toNSPoint(step.to)]; }
  void operator()(const Path::LineTo& step) const { [path lineToPoint:toNSPoint(step.to)]; }
  void operator()(const Path::Arc& step) const {
    [path appendBezierPathWithArcWithCenter:toNSPoint(step.centre)
                                     radius:step.radius
                                 startAngle:step.startAngle
                                   endAngle:step.endAngle
                                  clockwise:step.clockwise];
  }
  void operator()(const Path::Close& /*step*/) const { [path closePath]; }
};

NSBezierPath* toNSBezierPath(const Path& path) {
  NSBezierPath* result = [NSBezierPath bezierPath];
  for (const auto& step : path.steps) std::visit(Appender{result}, step);
  return result;
}

}  // namespace

void AppKitCanvas::fill(const Path& path, const Color& color) {
  [toNSColor(color) setFill];
  [toNSBezierPath(path) fill];
}

void AppKitCanvas::fillGradient(const Path& path, const Color& start, const Color& end,
                                double angleDegrees) {
  NSGradient* gradient = [[NSGradient alloc] initWithStartingColor:toNSColor(start)
                                                       endingColor:toNSColor(end)];
  [gradient drawInBezierPath:toNSBezierPath(path) angle:angleDegrees];
}

void AppKitCanvas::stroke(const Path& path, const Color& color, double lineWidth) {
  NSBezierPath* outline = toNSBezierPath(path);
  outline.lineWidth = lineWidth;
  [toNSColor(color) setStroke];
  [outline stroke];
}

void AppKitCanvas::drawText(const AttributedText& text, Point at, Anchor anchor) {
  NSAttributedString* line = toNSAttributedString(text);
  const NSSize size = line.size;
  [line drawAtPoint:toNSPoint(anchor.origin(at, {size.width, size.height}))];
}

void AppKitCanvas::pushClip(const Path& path) {
  [NSGraphicsContext saveGraphicsState];
  [toNSBezierPath(path) addClip];
}

void AppKitCanvas::popClip() {
  [NSGraphicsContext restoreGraphicsState];
}

}  // namespace kestrow::appkit
