// The panel's measures, the same on every desktop.
#pragma once

namespace kestrow {

// In points.
struct PanelMeasure {
  static constexpr double width = 340;
  static constexpr double inset = 16;  // around all content
  static constexpr double contentWidth = width - 2 * inset;
  static constexpr double rowSpacing = 8;    // between a control and what stands beside it
  static constexpr double titleIndent = 20;  // from a mark's edge to its title's
  static constexpr double cornerRadius = 12;
  static constexpr double sectionTitleGrowth = 1;  // beyond the small text's size
};

}  // namespace kestrow
