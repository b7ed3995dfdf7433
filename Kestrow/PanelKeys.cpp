#include "Kestrow/PanelKeys.hpp"

#include "KestrowCore/Text.hpp"

namespace kestrow {

std::optional<EditAction> keyEquivalent(const KeyModifiers& modifiers, std::string_view key) {
  if (!modifiers.command || modifiers.other) return std::nullopt;
  const auto lower = text::lowerCased(key);
  if (modifiers.shift) {
    if (lower == "z") return EditAction::redo;
    return std::nullopt;
  }
  if (lower == "x") return EditAction::cut;
  if (lower == "c") return EditAction::copy;
  if (lower == "v") return EditAction::paste;
  if (lower == "a") return EditAction::selectAll;
  if (lower == "z") return EditAction::undo;
  return std::nullopt;
}

}  // namespace kestrow
