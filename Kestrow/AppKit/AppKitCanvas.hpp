// Draws in the view that AppKit is asking to draw.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"

namespace kestrow::appkit {

// Inside drawRect: of a view that is not flipped, or another current graphics context.
class AppKitCanvas final : public Canvas {
 public:
  void fill(const Path& path, const Color& color) override;
  void fillGradient(const Path& path, const Color& start, const Color& end,
                    double angleDegrees) override;
  void stroke(const Path& path, const Color& color, double lineWidth) override;
  void drawText(const AttributedText& text, Point at, Anchor anchor) override;
  void pushClip(const Path& path) override;
  void popClip() override;
};

}  // namespace kestrow::appkit
