// Lays a pill's content out as elements with positions, for the whole pill or for one wing beside
// the camera housing. Lengths are points.
#pragma once

#include "KestrowCore/PillContent.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestrow {

// Each role has its own font.
enum class PillRole { teams, primary, secondary, tag, message, hint, headline, detail };

// The typographic width of a text in a role's font.
using MeasureText = std::function<double(std::string_view, PillRole)>;

struct PillElement {
  enum class Row { middle, upper, lower };
  struct Text {
    PillRole role = PillRole::primary;
    std::string text;
    bool operator==(const Text&) const = default;
  };
  struct Dot {
    bool operator==(const Dot&) const = default;
  };
  struct Divider {
    bool operator==(const Divider&) const = default;
  };
  using Kind = std::variant<Text, Dot, Divider>;

  Kind kind;
  double x = 0;  // left edge inside the region
  double width = 0;
  Row row = Row::middle;

  std::optional<std::string> text() const;
  std::optional<PillRole> role() const;

  bool operator==(const PillElement&) const = default;
};

struct PillComposer {
  // The whole pill as one shape, or one of the two wings.
  enum class Part { drawn, leftWing, rightWing };

  struct Gap {
    double width = 0;
    bool operator==(const Gap&) const = default;
  };
  using Item = std::variant<Gap, PillElement::Text, PillElement::Dot, PillElement::Divider>;

  static constexpr double dotSize = 6;
  static constexpr double dotGap = 7;
  static constexpr double dividerGap = 9;
  static constexpr double dividerWidth = 1;
  static constexpr double valueGap = 6;
  static constexpr double tagGap = 5;
  static constexpr double tagPadding = 4;
  static constexpr double padding = 12;

  // The row of items, with the given teams and secondary texts in place of the content's own.
  static std::vector<Item> items(const PillContent& content, Part part,
                                 const std::optional<std::string>& teams,
                                 const std::optional<std::string>& secondary);
  static double width(const std::vector<Item>& items, const MeasureText& measure);

  // What the content asks for, without the padding. `expanded` is the two-row form of an alert.
  static double contentWidth(const PillContent& content, Part part, bool expanded,
                             const MeasureText& measure);

  // The elements in a region `width` points wide; what is too long is shortened.
  static std::vector<PillElement> arrange(const PillContent& content, Part part, double width,
                                          bool expanded, const MeasureText& measure);

  // The texts of the elements as a person reads them.
  static std::vector<std::string> readingTexts(const std::vector<PillElement>& elements);
};

}  // namespace kestrow
