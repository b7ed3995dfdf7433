// Draws in the view that AppKit is asking to draw.
#pragma once

#include "Kestrow/AppKit/AppKitText.hpp"
#include "Kestrow/Platform/Canvas.hpp"

namespace kestrow::appkit {

// Inside drawRect: of a view that is not flipped, or another current graphics context.
class AppKitCanvas final : public Canvas {
 public:
  Size measure(const AttributedText& text) override { return measurer_.measure(text); }
  void fill(const Path& path, const Color& color) override;
  void fillGradient(const Path& path, const Color& start, const Color& end,
                    double angleDegrees) override;
  void stroke(const Path& path, const Color& color, double lineWidth) override;
  void drawText(const AttributedText& text, Point origin) override;
  void pushClip(const Path& path) override;
  void popClip() override;

 private:
  AppKitTextMeasurer measurer_;
};

}  // namespace kestrow::appkit
