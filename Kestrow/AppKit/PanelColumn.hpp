// A box of the panel: its nodes' views one under the other.
#pragma once

#include "Kestrow/AppKit/PanelItem.hpp"
#include "Kestrow/PanelReuse.hpp"

#import <AppKit/AppKit.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kestrow::appkit {

class PanelColumn final : public PanelItem {
 public:
  explicit PanelColumn(PanelSurfaceClient& client);

  NSStackView* _Nonnull stack() const { return stack_; }
  NSArray<NSView*>* _Nonnull views() override { return @[ stack_ ]; }

  // A node that was there before, by its kind and id, keeps its views.
  void apply(const PanelNode& node) override;

 private:
  void rebuild(const std::vector<PanelNode>& nodes);
  void arrange();

  PanelSurfaceClient& client_;
  NSStackView* _Nonnull stack_;
  std::vector<PanelNodeKey> keys_;
  std::vector<std::unique_ptr<PanelItem>> items_;  // one for each key
};

}  // namespace kestrow::appkit
