// What the panel shows, as a tree of nodes built from plain state.
#pragma once

#include "Kestrow/Platform/PanelSurface.hpp"
#include "KestrowCore/KeyMomentsLog.hpp"
#include "KestrowCore/LoginItem.hpp"
#include "KestrowCore/MatchPicker.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestrow {

// What changes in the panel; its other texts are fixed.
struct PanelState {
  PanelNode matches;
  PanelNode log;
  int theme = 0;       // index in TeamTheme::palette()
  int alertStyle = 0;  // index in allAlertStyles
  bool share = false;
  bool hide = false;
  LoginItemStatus login = LoginItemStatus::off;
  bool operator==(const PanelState&) const = default;
};

// The controls that the user can change something with, besides the matches (see idOfMatch).
struct PanelId {
  static constexpr std::string_view retry = "retry";
  static constexpr std::string_view theme = "theme";
  static constexpr std::string_view alertStyle = "alert-style";
  static constexpr std::string_view share = "share";
  static constexpr std::string_view hide = "hide";
  static constexpr std::string_view login = "login";
  static constexpr std::string_view loginItems = "login-items";
  static constexpr std::string_view quit = "quit";
};

namespace panel_nodes {

// Matches that are offered, the first ones of the list. No day of cricket has as many, and building
// controls for thousands, with word of each to assistive technology, takes longer than a click may.
inline constexpr std::size_t mostMatches = 300;

// The whole panel. `canExcludeFromCaptures` says whether the desktop leaves a choice about screen
// shares; where it does not, the panel says so instead of promising.
PanelNode tree(const PanelState& state, bool canExcludeFromCaptures);

// The match picker. The radio button of `followedId` is on, whatever the rows say.
PanelNode matches(const PickerState& state, const std::optional<std::string>& followedId);

// The id of a match's radio button. Match ids come from the service, which may send one twice or
// one that is another control's id; the prefix and the occurrence, counted from 1, keep them apart.
std::string idOfMatch(std::string_view matchId, int occurrence = 1);

// The match that a radio button stands for; nothing when the id is not a match's.
std::optional<std::string> matchOf(std::string_view nodeId);

// The key moments, newest first.
PanelNode log(const KeyMomentsLog& log);

}  // namespace panel_nodes
}  // namespace kestrow
