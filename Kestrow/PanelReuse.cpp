#include "Kestrow/PanelReuse.hpp"

#include <algorithm>
#include <map>

namespace kestrow {

std::vector<PanelNodeKey> keysOf(std::span<const PanelNode> nodes) {
  std::vector<PanelNodeKey> keys;
  keys.reserve(nodes.size());
  for (const auto& node : nodes) keys.push_back({.kind = node.kind.index(), .id = node.id});
  return keys;
}

std::vector<std::optional<std::size_t>> reusedPlaces(std::span<const PanelNodeKey> before,
                                                     std::span<const PanelNodeKey> after) {
  std::multimap<PanelNodeKey, std::size_t> free;
  for (std::size_t place = 0; place < before.size(); ++place) free.emplace(before[place], place);
  std::vector<std::optional<std::size_t>> places;
  places.reserve(after.size());
  for (const auto& key : after) {
    const auto found = free.lower_bound(key);
    if (found == free.end() || found->first != key) {
      places.emplace_back();
    } else {
      places.emplace_back(found->second);
      free.erase(found);
    }
  }
  return places;
}

std::size_t keptLines(std::span<const std::string> before, std::span<const std::string> after) {
  const auto changed =
      std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend()).first;
  return static_cast<std::size_t>(changed - before.rbegin());
}

}  // namespace kestrow
