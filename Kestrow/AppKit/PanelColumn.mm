#include "Kestrow/AppKit/PanelColumn.hpp"

#include <utility>
#include <variant>

#include "Kestrow/AppKit/PanelTexts.hpp"
#include "Kestrow/AppKit/Strings.hpp"

namespace kestrow::appkit {

namespace {

using Items = std::vector<std::unique_ptr<PanelItem>>;

// Takes the views out of the panel. One of them may be the control whose action is running, so the
// items themselves go later.
void retire(Items items) {
  for (const auto& item : items) {
    if (!item) continue;
    for (NSView* view in item->views()) [view removeFromSuperview];
  }
  const auto retired = std::make_shared<Items>(std::move(items));
  dispatch_async(dispatch_get_main_queue(), ^{
    retired->clear();
  });
}

}  // namespace

PanelColumn::PanelColumn(PanelSurfaceClient& client) : client_(client), stack_(makeColumn()) {}

void PanelColumn::apply(const PanelNode& node) {
  const auto& box = std::get<PanelBox>(node.kind);
  stack_.spacing = box.spacing;
  if (!box.name.empty()) {
    stack_.accessibilityElement = YES;
    stack_.accessibilityRole = NSAccessibilityGroupRole;
    stack_.accessibilityLabel = toNSString(box.name);
  }
  if (keysOf(box.nodes) != keys_) rebuild(box.nodes);
  for (std::size_t i = 0; i < items_.size(); ++i) items_[i]->apply(box.nodes[i]);
}

void PanelColumn::rebuild(const std::vector<PanelNode>& nodes) {
  auto before = std::move(items_);
  auto keys = keysOf(nodes);
  items_.clear();
  for (const auto place : reusedPlaces(keys_, keys)) {
    const auto& node = nodes[items_.size()];
    items_.push_back(place ? std::move(before[*place]) : makePanelItem(node, client_));
  }
  keys_ = std::move(keys);
  retire(std::move(before));
  arrange();
  NSAccessibilityPostNotification(stack_, NSAccessibilityLayoutChangedNotification);
}

// Touches only views that are not in their place, so that the others keep focus and reading place.
void PanelColumn::arrange() {
  NSUInteger place = 0;
  for (const auto& item : items_) {
    for (NSView* view in item->views()) {
      NSArray<NSView*>* arranged = stack_.arrangedSubviews;
      if (place >= arranged.count || arranged[place] != view) {
        [stack_ insertArrangedSubview:view atIndex:static_cast<NSInteger>(place)];
      }
      ++place;
    }
  }
}

}  // namespace kestrow::appkit
