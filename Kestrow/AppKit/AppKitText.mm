#include "Kestrow/AppKit/AppKitText.hpp"

#include "Kestrow/AppKit/Strings.hpp"

namespace kestrow::appkit {

namespace {

NSFontWeight toNSFontWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      break;
    case FontWeight::medium:
      return NSFontWeightMedium;
    case FontWeight::semibold:
      return NSFontWeightSemibold;
    case FontWeight::bold:
      return NSFontWeightBold;
    case FontWeight::heavy:
      return NSFontWeightHeavy;
  }
  return NSFontWeightRegular;
}

NSFont* toNSFont(const Font& font) {
  const NSFontWeight weight = toNSFontWeight(font.weight);
  if (font.monospacedDigits) {
    return [NSFont monospacedDigitSystemFontOfSize:font.size weight:weight];
  }
  return [NSFont systemFontOfSize:font.size weight:weight];
}

NSShadow* toNSShadow(const Glow& glow) {
  NSShadow* shadow = [[NSShadow alloc] init];
  shadow.shadowColor = toNSColor(glow.color);
  shadow.shadowBlurRadius = glow.radius;
  shadow.shadowOffset = NSMakeSize(0, 0);
  return shadow;
}

NSDictionary<NSAttributedStringKey, id>* toDictionary(const TextAttributes& attributes) {
  NSMutableDictionary<NSAttributedStringKey, id>* result = [NSMutableDictionary dictionary];
  result[NSFontAttributeName] = toNSFont(attributes.font);
  result[NSForegroundColorAttributeName] = toNSColor(attributes.color);
  result[NSKernAttributeName] = @(attributes.kerning);
  if (attributes.glow) result[NSShadowAttributeName] = toNSShadow(*attributes.glow);
  return result;
}

}  // namespace

NSColor* toNSColor(const Color& color) {
  return [NSColor colorWithSRGBRed:color.rgb.red
                             green:color.rgb.green
                              blue:color.rgb.blue
                             alpha:color.alpha];
}

NSAttributedString* toNSAttributedString(const AttributedText& runs) {
  NSMutableAttributedString* line = [[NSMutableAttributedString alloc] init];
  for (const auto& run : runs) {
    [line appendAttributedString:[[NSAttributedString alloc]
                                     initWithString:toNSString(run.text)
                                         attributes:toDictionary(run.attributes)]];
  }
  return line;
}

Size AppKitTextMeasurer::measure(const AttributedText& text) {
  const NSSize size = toNSAttributedString(text).size;
  return {size.width, size.height};
}

}  // namespace kestrow::appkit
