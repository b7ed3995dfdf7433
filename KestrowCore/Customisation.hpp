// Team colour themes, and the user's choice of one and of an alert style.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kestrow {

// An opaque sRGB colour; each component 0 to 1.
struct RGB {
  double red = 0;
  double green = 0;
  double blue = 0;

  constexpr RGB() = default;
  constexpr RGB(double r, double g, double b) : red(r), green(g), blue(b) {}
  // From a 24-bit colour number, red first (0xRRGGBB); the top byte is ignored.
  constexpr explicit RGB(std::uint32_t number)
      : red(((number >> 16U) & 0xFFU) / 255.0),
        green(((number >> 8U) & 0xFFU) / 255.0),
        blue((number & 0xFFU) / 255.0) {}

  bool operator==(const RGB&) const = default;
};

struct TeamTheme {
  std::string_view teamId;
  std::string_view name;
  RGB background;
  RGB foreground;

  static const TeamTheme& standard();           // the default theme: black and white
  static std::span<const TeamTheme> palette();  // in the order of the panel, standard first

  // The theme with exactly this id, else the standard one.
  static const TeamTheme& named(const std::optional<std::string>& teamId);

  // The colour of accents; none in the standard theme.
  std::optional<RGB> accent() const;

  bool operator==(const TeamTheme&) const = default;
};

enum class AlertStyle { big, subtle };
inline constexpr std::array allAlertStyles{AlertStyle::big, AlertStyle::subtle};

// What the pill is drawn with.
struct PillAppearance {
  TeamTheme theme = TeamTheme::standard();
  AlertStyle alertStyle = AlertStyle::big;
  bool operator==(const PillAppearance&) const = default;
};

// The user's choice. A theme id that no theme has is kept, and looks like the standard theme.
struct Customisation {
  std::string themeTeamId{TeamTheme::standard().teamId};
  AlertStyle alertStyle = AlertStyle::big;

  Customisation() = default;
  Customisation(std::string themeId, AlertStyle style);
  explicit Customisation(const std::optional<std::map<std::string, std::string>>& stored);

  // The form kept in the state file: "theme" and "alertStyle".
  std::map<std::string, std::string> stored() const;
  PillAppearance appearance() const;

  bool operator==(const Customisation&) const = default;
};

}  // namespace kestrow
