// Colours, fonts and lines of text as AppKit draws them.
#pragma once

#import <AppKit/AppKit.h>

#include "Kestrow/Platform/Canvas.hpp"

namespace kestrow::appkit {

NSColor* _Nonnull toNSColor(const Color& color);

NSAttributedString* _Nonnull toNSAttributedString(const AttributedText& text);

// Measures without a window.
class AppKitTextMeasurer final : public TextMeasurer {
 public:
  Size measure(const AttributedText& text) override;
};

}  // namespace kestrow::appkit
