// Colours, fonts and lines of text as AppKit draws them.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"

#import <AppKit/AppKit.h>

namespace kestrow::appkit {

NSColor* _Nonnull toNSColor(const Color& color);

NSAttributedString* _Nonnull toNSAttributedString(const AttributedText& text);

// Measures without a window.
class AppKitTextMeasurer final : public TextMeasurer {
 public:
  Size measure(const AttributedText& text) override;
};

}  // namespace kestrow::appkit
