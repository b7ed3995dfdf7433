#include "Kestrow/PanelNodes.hpp"

#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/PanelText.hpp"
#include "KestrowCore/Text.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow::panel_nodes {

namespace {

constexpr double columnSpacing = 8;
constexpr double listSpacing = 6;
constexpr const char* matchesTitle = "Followed match";
constexpr const char* logTitle = "Key moments";
constexpr std::string_view matchPrefix = "match-";

template <class Kind>
PanelNode node(std::string_view id, Kind kind) {
  return {.id = std::string(id), .kind = std::move(kind)};
}

PanelNode label(std::string_view id, std::string text) {
  return node(id, PanelLabel{std::move(text)});
}

// Text from the service: one paragraph, cut where nobody reads on. Thousands of line breaks would
// take as much room as thousands of lines.
std::string shown(std::string text) {
  return text::onOneLine(text::readable(std::move(text)));
}

std::vector<std::string> themeNames() {
  std::vector<std::string> names;
  names.reserve(TeamTheme::palette().size());
  for (const auto& theme : TeamTheme::palette()) names.emplace_back(theme.name);
  return names;
}

std::vector<std::string> alertStyleNames() {
  std::vector<std::string> names;
  names.reserve(allAlertStyles.size());
  for (const auto style : allAlertStyles) {
    names.emplace_back(style == AlertStyle::big ? "Big alert" : "Subtle alert");
  }
  return names;
}

std::vector<PanelNode> sectionNodes(const std::vector<PickerSection>& sections,
                                    const std::optional<std::string>& followedId) {
  std::vector<PanelNode> nodes;
  std::map<std::string_view, int> seen;
  std::size_t left = mostMatches;
  for (const auto& section : sections) {
    if (left == 0) break;
    nodes.push_back(node("section-" + section.title, PanelSectionTitle{section.title}));
    for (const auto& row : section.rows) {
      if (left == 0) break;
      --left;
      nodes.push_back(node(idOfMatch(row.id, ++seen[row.id]),
                           PanelRadioButton{.title = shown(row.teams),
                                            .detail = shown(row.competition + " · " + row.detail),
                                            .isOn = followedId == row.id}));
    }
  }
  return nodes;
}

struct MatchNodes {
  const std::optional<std::string>& followedId;

  std::vector<PanelNode> operator()(const PickerState::Empty& state) const {
    auto nodes = sampleNote(state.isSample);
    nodes.push_back(label("empty", PickerState::emptyText));
    return nodes;
  }
  std::vector<PanelNode> operator()(const PickerState::Loaded& state) const {
    auto nodes = sampleNote(state.isSample);
    std::ranges::move(sectionNodes(state.sections, followedId), std::back_inserter(nodes));
    return nodes;
  }
  std::vector<PanelNode> operator()(const PickerState::Loading& /*state*/) const {
    return {label("loading", PickerState::loadingText)};
  }
  std::vector<PanelNode> operator()(const PickerState::Error& /*state*/) const {
    return {label("error", PickerState::errorText),
            node(PanelId::retry, PanelButton{PickerState::retryText})};
  }

  static std::vector<PanelNode> sampleNote(bool isSample) {
    if (!isSample) return {};
    return {label("sample", PickerState::sampleText)};
  }
};

void addCustomisation(std::vector<PanelNode>& nodes, const PanelState& state) {
  nodes.push_back(node("customisation-title", PanelHeader{"Customisation"}));
  nodes.push_back(
      node(PanelId::theme,
           PanelPopUp{.label = "Team colours", .items = themeNames(), .selected = state.theme}));
  nodes.push_back(node(PanelId::alertStyle, PanelPopUp{.label = "Alert style",
                                                       .items = alertStyleNames(),
                                                       .selected = state.alertStyle}));
}

void addPreferences(std::vector<PanelNode>& nodes, const PanelState& state,
                    bool canExcludeFromCaptures) {
  nodes.push_back(
      node(PanelId::share,
           PanelCheckBox{.title = "Show in screen shares",
                         .isOn = state.share || !canExcludeFromCaptures,
                         .status = {},
                         .detail = canExcludeFromCaptures ? PanelText::screenShareNote
                                                          : PanelText::screenShareFixedNote,
                         .isEnabled = canExcludeFromCaptures}));
  nodes.push_back(node(
      PanelId::hide,
      PanelCheckBox{
          .title = "Hide pill", .isOn = state.hide, .status = {}, .detail = PanelText::hideNote}));
  nodes.push_back(node(PanelId::login, PanelCheckBox{.title = "Launch at login",
                                                     .isOn = isOn(state.login),
                                                     .status = statusText(state.login),
                                                     .detail = {}}));
  if (showsLoginItemsButton(state.login)) {
    nodes.push_back(node(PanelId::loginItems, PanelButton{loginItemsButtonText}));
  }
}

}  // namespace

PanelNode tree(const PanelState& state, bool canExcludeFromCaptures) {
  PanelBox column{.name = {}, .spacing = columnSpacing, .nodes = {}};
  auto& nodes = column.nodes;
  nodes.push_back(node("matches-title", PanelHeader{matchesTitle}));
  nodes.push_back(state.matches);
  nodes.push_back(node("separator-1", PanelSeparator{}));
  nodes.push_back(node("log-title", PanelHeader{logTitle}));
  nodes.push_back(state.log);
  nodes.push_back(node("separator-2", PanelSeparator{}));
  addCustomisation(nodes, state);
  nodes.push_back(node("separator-3", PanelSeparator{}));
  addPreferences(nodes, state, canExcludeFromCaptures);
  nodes.push_back(node("separator-4", PanelSeparator{}));
  nodes.push_back(node(PanelId::quit, PanelButton{"Quit Kestrow"}));
  return node("panel", std::move(column));
}

PanelNode matches(const PickerState& state, const std::optional<std::string>& followedId) {
  return node("matches", PanelBox{.name = matchesTitle,
                                  .spacing = listSpacing,
                                  .nodes = std::visit(MatchNodes{followedId}, state.value)});
}

std::string idOfMatch(std::string_view matchId, int occurrence) {
  std::string id(matchPrefix);
  return id.append(std::to_string(occurrence)).append(".").append(matchId);
}

std::optional<std::string> matchOf(std::string_view nodeId) {
  const auto dot = nodeId.find('.');
  if (!nodeId.starts_with(matchPrefix) || dot == std::string_view::npos) return std::nullopt;
  return std::string(nodeId.substr(dot + 1));
}

PanelNode log(const KeyMomentsLog& log) {
  auto content = PanelLogic::log(log.lines());
  if (auto* empty = std::get_if<LogContent::Empty>(&content.value)) {
    return label("log", std::move(empty->message));
  }
  auto lines = std::move(std::get<LogContent::Lines>(content.value).lines);
  for (auto& line : lines) line = shown(std::move(line));
  return node("log",
              PanelLines{.name = logTitle, .spacing = listSpacing, .lines = std::move(lines)});
}

}  // namespace kestrow::panel_nodes
