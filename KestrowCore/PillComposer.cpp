#include "KestrowCore/PillComposer.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrow {
namespace {

using Item = PillComposer::Item;
using Gap = PillComposer::Gap;
using Part = PillComposer::Part;
using OptionalText = std::optional<std::string>;
using Status = PillContent::Status;

template <class... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};

bool isExpandedAlert(const PillContent& content, Part part, bool expanded) {
  return expanded && part == Part::drawn && content.status == Status::boom;
}

std::vector<Item> alertItems(const PillContent& content, Part part, const OptionalText& detail) {
  std::vector<Item> items;
  if (part != Part::rightWing) {
    items.emplace_back(PillElement::Text{PillRole::headline, content.primary});
  }
  if (part == Part::leftWing || !detail) return items;
  if (part == Part::drawn) items.emplace_back(Gap{PillComposer::dividerGap});
  items.emplace_back(PillElement::Text{PillRole::detail, *detail});
  return items;
}

std::vector<Item> messageItems(const PillContent& content, Part part) {
  std::vector<Item> items;
  const bool hasHint = content.status == Status::pickMatch && part != Part::leftWing;
  if (part != Part::rightWing) {
    items.emplace_back(PillElement::Dot{});
    items.emplace_back(Gap{PillComposer::dotGap});
    items.emplace_back(PillElement::Text{PillRole::message, content.primary});
    if (hasHint) items.emplace_back(Gap{PillComposer::valueGap});
  }
  if (hasHint) items.emplace_back(PillElement::Text{PillRole::hint, PillContent::pickHint});
  return items;
}

void appendTeams(std::vector<Item>& items, const OptionalText& teams) {
  items.emplace_back(PillElement::Dot{});
  if (!teams) return;
  items.emplace_back(Gap{PillComposer::dotGap});
  items.emplace_back(PillElement::Text{PillRole::teams, *teams});
}

void appendValues(std::vector<Item>& items, const PillContent& content,
                  const OptionalText& secondary) {
  items.emplace_back(PillElement::Text{PillRole::primary, content.primary});
  if (secondary) {
    items.emplace_back(Gap{PillComposer::valueGap});
    items.emplace_back(PillElement::Text{PillRole::secondary, *secondary});
  }
  for (std::string& tag : content.tags()) {
    items.emplace_back(Gap{PillComposer::tagGap});
    items.emplace_back(PillElement::Text{PillRole::tag, std::move(tag)});
  }
}

std::vector<Item> matchItems(const PillContent& content, Part part, const OptionalText& teams,
                             const OptionalText& secondary) {
  std::vector<Item> items;
  if (part != Part::rightWing) appendTeams(items, teams);
  if (part == Part::drawn) {
    items.emplace_back(Gap{PillComposer::dividerGap});
    if (teams) {
      items.emplace_back(PillElement::Divider{});
      items.emplace_back(Gap{PillComposer::dividerGap});
    }
  }
  if (part != Part::leftWing) appendValues(items, content, secondary);
  return items;
}

double itemWidth(const Item& item, const MeasureText& measure) {
  return std::visit(Overloaded{
                        [](const Gap& gap) { return gap.width; },
                        [](const PillElement::Dot&) { return PillComposer::dotSize; },
                        [](const PillElement::Divider&) { return PillComposer::dividerWidth; },
                        [&](const PillElement::Text& text) {
                          const double width = measure(text.text, text.role);
                          // A badge ends on whole points, so that its edge is sharp.
                          return text.role == PillRole::tag
                                     ? std::ceil(width) + 2 * PillComposer::tagPadding
                                     : width;
                        },
                    },
                    item);
}

std::string truncated(std::string_view text, double width, PillRole role,
                      const MeasureText& measure) {
  return PillContent::truncate(text, width,
                               [&](std::string_view part) { return measure(part, role); });
}

// The text made narrower by `overflow`; nothing when no character of it would stay.
OptionalText shortenedBy(double overflow, const std::string& text, PillRole role,
                         const MeasureText& measure) {
  const double room = std::max(measure(text, role) - overflow, 0.0);
  std::string shorter = truncated(text, room, role, measure);
  if (shorter.empty() || shorter == "…") return std::nullopt;
  return shorter;
}

// The items that fit into `room`: the teams give way first, then the secondary text. The score and
// the tags stay whole.
std::vector<Item> fittingItems(const PillContent& content, Part part, double room,
                               const MeasureText& measure) {
  OptionalText teams = content.teamsText();
  OptionalText secondary = content.secondary;
  std::vector<Item> items = PillComposer::items(content, part, teams, secondary);
  double overflow = PillComposer::width(items, measure) - room;
  if (overflow > 0 && teams) {
    teams = shortenedBy(overflow, *teams, PillRole::teams, measure);
    items = PillComposer::items(content, part, teams, secondary);
    overflow = PillComposer::width(items, measure) - room;
  }
  if (overflow > 0 && secondary) {
    secondary = shortenedBy(overflow, *secondary, PillRole::secondary, measure);
    items = PillComposer::items(content, part, teams, secondary);
  }
  return items;
}

double startX(Part part, double regionWidth, double itemsWidth) {
  switch (part) {
    case Part::drawn:
      return std::max((regionWidth - itemsWidth) * 0.5, PillComposer::padding);
    case Part::leftWing:
      // Against the side of the camera housing.
      return std::max(regionWidth - PillComposer::padding - itemsWidth, PillComposer::padding);
    case Part::rightWing:
      break;
  }
  return PillComposer::padding;
}

std::vector<PillElement> placed(std::vector<Item> items, double x, const MeasureText& measure) {
  std::vector<PillElement> elements;
  elements.reserve(items.size());
  for (Item& item : items) {
    const double width = itemWidth(item, measure);
    std::visit(Overloaded{
                   [](Gap&) {},
                   [&](auto& kind) { elements.push_back({std::move(kind), x, width}); },
               },
               item);
    x += width;
  }
  return elements;
}

// The two rows of an expanded alert, each centred on its own.
std::vector<PillElement> alertRows(const PillContent& content, double regionWidth, double room,
                                   const MeasureText& measure) {
  std::vector<PillElement> elements;
  const auto addRow = [&](std::string_view text, PillRole role, PillElement::Row row) {
    std::string fitting = truncated(text, room, role, measure);
    if (fitting.empty()) return;
    const double width = measure(fitting, role);
    elements.push_back(
        {PillElement::Text{role, std::move(fitting)}, (regionWidth - width) * 0.5, width, row});
  };
  addRow(content.primary, PillRole::headline, PillElement::Row::upper);
  addRow(content.secondary.value_or(""), PillRole::detail, PillElement::Row::lower);
  return elements;
}

}  // namespace

std::optional<std::string> PillElement::text() const {
  const auto* text = std::get_if<Text>(&kind);
  return text == nullptr ? std::nullopt : std::optional(text->text);
}

std::optional<PillRole> PillElement::role() const {
  const auto* text = std::get_if<Text>(&kind);
  return text == nullptr ? std::nullopt : std::optional(text->role);
}

std::vector<Item> PillComposer::items(const PillContent& content, Part part,
                                      const std::optional<std::string>& teams,
                                      const std::optional<std::string>& secondary) {
  if (content.status == Status::boom) return alertItems(content, part, secondary);
  if (content.isMessage()) return messageItems(content, part);
  return matchItems(content, part, teams, secondary);
}

double PillComposer::width(const std::vector<Item>& items, const MeasureText& measure) {
  double total = 0;
  for (const Item& item : items) total += itemWidth(item, measure);
  return total;
}

double PillComposer::contentWidth(const PillContent& content, Part part, bool expanded,
                                  const MeasureText& measure) {
  if (isExpandedAlert(content, part, expanded)) {
    return std::ceil(std::max(measure(content.primary, PillRole::headline),
                              measure(content.secondary.value_or(""), PillRole::detail)));
  }
  return std::ceil(width(items(content, part, content.teamsText(), content.secondary), measure));
}

std::vector<PillElement> PillComposer::arrange(const PillContent& content, Part part, double width,
                                               bool expanded, const MeasureText& measure) {
  const double room = std::max(width - 2 * padding, 0.0);
  if (isExpandedAlert(content, part, expanded)) return alertRows(content, width, room, measure);
  std::vector<Item> items = fittingItems(content, part, room, measure);
  const double x = startX(part, width, PillComposer::width(items, measure));
  return placed(std::move(items), x, measure);
}

std::vector<std::string> PillComposer::readingTexts(const std::vector<PillElement>& elements) {
  std::vector<std::string> texts;
  for (const PillElement& element : elements) {
    const auto* text = std::get_if<PillElement::Text>(&element.kind);
    if (text != nullptr && text->role != PillRole::hint) texts.push_back(text->text);
  }
  return texts;
}

}  // namespace kestrow
