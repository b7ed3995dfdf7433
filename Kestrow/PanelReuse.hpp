// Which controls of a box, and which lines of a log, outlive a change. A control that stays keeps
// the keyboard, the scroll place and the place where assistive technology reads.
#pragma once

#include "Kestrow/Platform/PanelSurface.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kestrow {

// What makes a node the same one before and after a change.
struct PanelNodeKey {
  std::size_t kind = 0;  // index in PanelNode::kind
  std::string id;
  auto operator<=>(const PanelNodeKey&) const = default;
};

std::vector<PanelNodeKey> keysOf(std::span<const PanelNode> nodes);

// For each key after the change the place it had before it, or nothing when it is new. No place is
// given twice; of equal keys the first comes first.
std::vector<std::optional<std::size_t>> reusedPlaces(std::span<const PanelNodeKey> before,
                                                     std::span<const PanelNodeKey> after);

// How many lines at the end are the same before and after a change. New ones come in at the top of
// a log, so these keep what was made of them.
std::size_t keptLines(std::span<const std::string> before, std::span<const std::string> after);

}  // namespace kestrow
