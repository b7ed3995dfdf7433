#include "Kestrow/AppKit/PanelControls.hpp"

#include <variant>

#include "Kestrow/AppKit/PanelTexts.hpp"
#include "Kestrow/AppKit/Strings.hpp"

namespace kestrow::appkit {

namespace {

void setTitle(NSButton* button, const std::string& title) {
  NSString* shown = toNSString(title);
  if (![button.title isEqualToString:shown]) button.title = shown;
}

void setOn(NSButton* button, bool isOn) {
  button.state = isOn ? NSControlStateValueOn : NSControlStateValueOff;
}

// Shows the text, or nothing where there is none.
void setOptionalText(NSTextField* label, const std::string& text) {
  setText(label, text);
  label.hidden = text.empty();
}

NSStackView* makeRow(NSArray<NSView*>* views) {
  NSStackView* row = [NSStackView stackViewWithViews:views];
  row.orientation = NSUserInterfaceLayoutOrientationHorizontal;
  row.alignment = NSLayoutAttributeFirstBaseline;
  row.spacing = PanelMeasure::rowSpacing;
  return row;
}

}  // namespace

// Radio buttons beside each other with one action are one group: AppKit turns the others off, and
// the arrow keys move in it.
RadioItem::RadioItem(PanelSurfaceClient& client)
    : action_([[KestrowAction alloc] initWithFunction:[this, &client] {
        const auto id = id_;  // the answer may take this item away
        client.radioButtonPicked(id);
      }]),
      button_([NSButton radioButtonWithTitle:@"" target:action_ action:@selector(run:)]),
      detail_(makeSecondaryLabel(PanelMeasure::contentWidth - PanelMeasure::titleIndent)),
      detailRow_(makeRow(@[ detail_ ])) {
  button_.lineBreakMode = NSLineBreakByTruncatingTail;
  [button_.widthAnchor constraintLessThanOrEqualToConstant:PanelMeasure::contentWidth].active = YES;
  detailRow_.edgeInsets = NSEdgeInsetsMake(0, PanelMeasure::titleIndent, 0, 0);
}

void RadioItem::apply(const PanelNode& node) {
  const auto& radio = std::get<PanelRadioButton>(node.kind);
  id_ = node.id;
  button_.identifier = toNSString(node.id);
  setTitle(button_, radio.title);
  setOn(button_, radio.isOn);
  setText(detail_, radio.detail);
  detailRow_.hidden = radio.detail.empty();
  button_.accessibilityHelp = toNSString(radio.help());
}

CheckBoxItem::CheckBoxItem(PanelSurfaceClient& client)
    : action_([[KestrowAction alloc] initWithFunction:[this, &client] {
        const auto id = id_;  // the answer may take this item away
        client.checkBoxToggled(id, button_.state == NSControlStateValueOn);
      }]),
      button_([NSButton checkboxWithTitle:@"" target:action_ action:@selector(run:)]),
      status_(makeSecondaryLabel(PanelMeasure::contentWidth)),
      detail_(makeSecondaryLabel(PanelMeasure::contentWidth)),
      row_(makeRow(@[ button_, status_ ])) {}

void CheckBoxItem::apply(const PanelNode& node) {
  const auto& box = std::get<PanelCheckBox>(node.kind);
  id_ = node.id;
  setTitle(button_, box.title);
  setOn(button_, box.isOn);
  button_.enabled = box.isEnabled;
  button_.accessibilityHelp = toNSString(box.help());
  setOptionalText(status_, box.status);
  setOptionalText(detail_, box.detail);
}

PopUpItem::PopUpItem(PanelSurfaceClient& client)
    : action_([[KestrowAction alloc] initWithFunction:[this, &client] {
        const auto id = id_;  // the answer may take this item away
        client.popUpChanged(id, static_cast<int>(button_.indexOfSelectedItem));
      }]),
      label_(makeSecondaryLabel(PanelMeasure::contentWidth)),
      button_([[NSPopUpButton alloc] initWithFrame:NSMakeRect(0, 0, 0, 0) pullsDown:NO]),
      row_(makeRow(@[ label_, button_ ])) {
  button_.target = action_;
  button_.action = @selector(run:);
}

void PopUpItem::apply(const PanelNode& node) {
  const auto& popUp = std::get<PanelPopUp>(node.kind);
  id_ = node.id;
  setText(label_, popUp.label);
  button_.accessibilityLabel = toNSString(popUp.label);
  if (popUp.items != items_) {
    [button_ removeAllItems];
    // Through the menu: the button itself would drop an earlier item of the same title.
    for (const auto& item : popUp.items) {
      [button_.menu addItemWithTitle:toNSString(item) action:nil keyEquivalent:@""];
    }
    items_ = popUp.items;
  }
  [button_ selectItemAtIndex:popUp.selected];
}

ButtonItem::ButtonItem(PanelSurfaceClient& client)
    : action_([[KestrowAction alloc] initWithFunction:[this, &client] {
        const auto id = id_;  // the answer may take this item away
        client.buttonPressed(id);
      }]),
      button_([NSButton buttonWithTitle:@"" target:action_ action:@selector(run:)]) {}

void ButtonItem::apply(const PanelNode& node) {
  id_ = node.id;
  setTitle(button_, std::get<PanelButton>(node.kind).title);
}

SeparatorItem::SeparatorItem() : box_([[NSBox alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)]) {
  box_.boxType = NSBoxSeparator;
  [box_.widthAnchor constraintEqualToConstant:PanelMeasure::contentWidth].active = YES;
}

}  // namespace kestrow::appkit
