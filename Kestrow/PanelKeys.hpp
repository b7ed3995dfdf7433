// The editing shortcuts of the panel. A program without a menu bar gets none from its desktop.
#pragma once

#include <optional>
#include <string_view>

namespace kestrow {

enum class EditAction { cut, copy, paste, selectAll, undo, redo };

// The keys held down with another. `command` is the desktop's key for shortcuts: Command on macOS,
// Ctrl elsewhere; `other` is any further one, Caps Lock included.
struct KeyModifiers {
  bool command = false;
  bool shift = false;
  bool other = false;
  bool operator==(const KeyModifiers&) const = default;
};

// The action that the key stands for; nothing when the panel has no use for it. `key` is the text
// of the key without its modifiers.
std::optional<EditAction> keyEquivalent(const KeyModifiers& modifiers, std::string_view key);

}  // namespace kestrow
