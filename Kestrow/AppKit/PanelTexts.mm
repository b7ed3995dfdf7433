#include "Kestrow/AppKit/PanelTexts.hpp"

#include <variant>

#include "Kestrow/AppKit/Strings.hpp"
#include "Kestrow/PanelReuse.hpp"

namespace kestrow::appkit {

NSTextField* makeWrappingLabel(double width) {
  NSTextField* label = [NSTextField wrappingLabelWithString:@""];
  label.selectable = NO;
  label.preferredMaxLayoutWidth = width;
  return label;
}

NSTextField* makeSecondaryLabel(double width) {
  NSTextField* label = makeWrappingLabel(width);
  label.font = [NSFont systemFontOfSize:NSFont.smallSystemFontSize];
  label.textColor = NSColor.secondaryLabelColor;
  return label;
}

void setText(NSTextField* label, const std::string& text) {
  NSString* shown = toNSString(text);
  if (![label.stringValue isEqualToString:shown]) label.stringValue = shown;
}

NSStackView* makeColumn() {
  NSStackView* stack = [NSStackView stackViewWithViews:@[]];
  stack.orientation = NSUserInterfaceLayoutOrientationVertical;
  stack.alignment = NSLayoutAttributeLeading;
  return stack;
}

HeaderItem::HeaderItem() : label_([NSTextField labelWithString:@""]) {
  label_.font = [NSFont boldSystemFontOfSize:NSFont.systemFontSize];
}

void HeaderItem::apply(const PanelNode& node) {
  setText(label_, std::get<PanelHeader>(node.kind).text);
}

SectionTitleItem::SectionTitleItem() : label_(makeWrappingLabel(PanelMeasure::contentWidth)) {
  label_.font =
      [NSFont boldSystemFontOfSize:NSFont.smallSystemFontSize + PanelMeasure::sectionTitleGrowth];
}

void SectionTitleItem::apply(const PanelNode& node) {
  setText(label_, std::get<PanelSectionTitle>(node.kind).text);
}

LabelItem::LabelItem() : label_(makeSecondaryLabel(PanelMeasure::contentWidth)) {}

void LabelItem::apply(const PanelNode& node) {
  setText(label_, std::get<PanelLabel>(node.kind).text);
}

LinesItem::LinesItem() : stack_(makeColumn()) {
  stack_.accessibilityElement = YES;
  stack_.accessibilityRole = NSAccessibilityGroupRole;
}

void LinesItem::apply(const PanelNode& node) {
  const auto& shown = std::get<PanelLines>(node.kind);
  stack_.accessibilityLabel = toNSString(shown.name);
  stack_.spacing = shown.spacing;

  const auto& lines = shown.lines;
  const std::size_t kept = keptLines(lines_, lines);
  const std::size_t stale = lines_.size() - kept;
  const std::size_t fresh = lines.size() - kept;
  NSArray<NSView*>* labels = [stack_.arrangedSubviews copy];
  for (std::size_t i = 0; i < stale; ++i) [labels[i] removeFromSuperview];
  for (std::size_t i = 0; i < fresh; ++i) {
    NSTextField* label = makeWrappingLabel(PanelMeasure::contentWidth);
    setText(label, lines[i]);
    [stack_ insertArrangedSubview:label atIndex:static_cast<NSInteger>(i)];
  }
  lines_ = lines;
}

}  // namespace kestrow::appkit
