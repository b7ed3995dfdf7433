#include "KestrowCore/Customisation.hpp"

#include <algorithm>
#include <utility>

namespace kestrow {
namespace {

constexpr RGB black(0x000000U);
constexpr RGB white(0xFFFFFFU);

// In the order of the panel's list.
constexpr std::array<TeamTheme, 12> themes{{
    {"default", "Default", black, white},
    {"ind", "India", RGB(0x0B4EA2U), white},
    {"mi", "Mumbai Indians", RGB(0x004BA0U), white},
    {"csk", "Chennai Super Kings", RGB(0xF9CD05U), black},
    {"rcb", "Royal Challengers Bengaluru", RGB(0xC8102EU), white},
    {"kkr", "Kolkata Knight Riders", RGB(0x3A225DU), white},
    {"srh", "Sunrisers Hyderabad", RGB(0xF26522U), white},
    {"rr", "Rajasthan Royals", RGB(0xEA1A85U), white},
    {"dc", "Delhi Capitals", RGB(0x17479EU), white},
    {"pbks", "Punjab Kings", RGB(0xDD1F2DU), white},
    {"gt", "Gujarat Titans", RGB(0x1B2133U), white},
    {"lsg", "Lucknow Super Giants", RGB(0x0057A8U), white},
}};

constexpr const char* themeKey = "theme";
constexpr const char* alertStyleKey = "alertStyle";
constexpr const char* bigName = "big";
constexpr const char* subtleName = "subtle";

}  // namespace

const TeamTheme& TeamTheme::standard() {
  return themes.front();
}

std::span<const TeamTheme> TeamTheme::palette() {
  return themes;
}

const TeamTheme& TeamTheme::named(const std::optional<std::string>& teamId) {
  const auto* found =
      std::ranges::find_if(themes, [&](const TeamTheme& theme) { return theme.teamId == teamId; });
  return found == themes.end() ? standard() : *found;
}

std::optional<RGB> TeamTheme::accent() const {
  if (teamId == standard().teamId) return std::nullopt;
  return background;
}

Customisation::Customisation(std::string themeId, AlertStyle style)
    : themeTeamId(std::move(themeId)), alertStyle(style) {}

Customisation::Customisation(const std::optional<std::map<std::string, std::string>>& stored) {
  if (!stored) return;
  if (const auto theme = stored->find(themeKey); theme != stored->end()) {
    themeTeamId = theme->second;
  }
  if (const auto style = stored->find(alertStyleKey); style != stored->end()) {
    alertStyle = style->second == subtleName ? AlertStyle::subtle : AlertStyle::big;
  }
}

std::map<std::string, std::string> Customisation::stored() const {
  return {{themeKey, themeTeamId},
          {alertStyleKey, alertStyle == AlertStyle::subtle ? subtleName : bigName}};
}

PillAppearance Customisation::appearance() const {
  return {TeamTheme::named(themeTeamId), alertStyle};
}

}  // namespace kestrow
