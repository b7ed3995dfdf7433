#include "Kestrow/BoomPresentation.hpp"

#include "KestrowCore/Text.hpp"

#include <string>

namespace kestrow {

namespace {

const char* label(BoomKind kind) {
  switch (kind) {
    case BoomKind::four:
      return "FOUR!";
    case BoomKind::six:
      return "SIX!";
    case BoomKind::wicket:
      return "WICKET!";
    case BoomKind::correction:
    case BoomKind::other:
      break;
  }
  return "Kestrow";
}

}  // namespace

BoomPresentation::Text BoomPresentation::text(const BoomEvent& event) {
  return {label(event.kind), event.batter ? *event.batter + " (" + event.team + ")" : event.team};
}

std::pair<PillContent, PillEmphasis> BoomPresentation::present(const BoomEvent& event,
                                                               AlertStyle style,
                                                               const PillContent& over) {
  if (style == AlertStyle::subtle) return {over, PillEmphasis::flash};
  auto [label, who] = text(event);
  return {PillContent::boom(std::move(label), std::move(who)), PillEmphasis::expanded};
}

void BoomPresentation::announce(Desktop& desktop, std::string_view text) {
  desktop.announce(text::readable(std::string(text)));
}

}  // namespace kestrow
