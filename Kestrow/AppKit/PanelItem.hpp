// One node of the panel as native views.
#pragma once

#include "Kestrow/PanelMeasure.hpp"
#include "Kestrow/Platform/PanelSurface.hpp"

#import <AppKit/AppKit.h>

#include <memory>

namespace kestrow::appkit {

// Main thread only.
class PanelItem {
 public:
  PanelItem() = default;
  PanelItem(const PanelItem&) = delete;
  PanelItem& operator=(const PanelItem&) = delete;
  virtual ~PanelItem() = default;

  // What stands in the column for it, from top to bottom. Always the same views.
  virtual NSArray<NSView*>* _Nonnull views() = 0;

  // Shows the node, which is of the kind that the item was made for; also takes back what the user
  // changed in the control when the node says otherwise.
  virtual void apply(const PanelNode& node) = 0;
};

// The item for the node, not yet applied. The client outlives it.
std::unique_ptr<PanelItem> makePanelItem(const PanelNode& node, PanelSurfaceClient& client);

}  // namespace kestrow::appkit
