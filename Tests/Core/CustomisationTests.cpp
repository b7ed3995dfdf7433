#include "KestrowCore/Customisation.hpp"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace kestrow {
namespace {

using Stored = std::map<std::string, std::string>;

TEST(RgbColour, IsMadeFromAColourNumberByteByByte) {
  const RGB colour(0x0B4EA2U);
  EXPECT_EQ(colour.red, 0x0B / 255.0);
  EXPECT_EQ(colour.green, 0x4E / 255.0);
  EXPECT_EQ(colour.blue, 0xA2 / 255.0);
  EXPECT_EQ(RGB(0x000000U), RGB(0, 0, 0));
  EXPECT_EQ(RGB(0xFFFFFFU), RGB(1, 1, 1));
  EXPECT_EQ(RGB(), RGB(0, 0, 0));
}

TEST(RgbColour, IgnoresTheTopByte) {
  EXPECT_EQ(RGB(0xAB123456U), RGB(0x00123456U));
}

TEST(TeamThemes, AreTheTwelveOfThePanelInOrder) {
  const std::vector<std::tuple<std::string, std::string, unsigned, unsigned>> expected = {
      {"default", "Default", 0x000000, 0xFFFFFF},
      {"ind", "India", 0x0B4EA2, 0xFFFFFF},
      {"mi", "Mumbai Indians", 0x004BA0, 0xFFFFFF},
      {"csk", "Chennai Super Kings", 0xF9CD05, 0x000000},
      {"rcb", "Royal Challengers Bengaluru", 0xC8102E, 0xFFFFFF},
      {"kkr", "Kolkata Knight Riders", 0x3A225D, 0xFFFFFF},
      {"srh", "Sunrisers Hyderabad", 0xF26522, 0xFFFFFF},
      {"rr", "Rajasthan Royals", 0xEA1A85, 0xFFFFFF},
      {"dc", "Delhi Capitals", 0x17479E, 0xFFFFFF},
      {"pbks", "Punjab Kings", 0xDD1F2D, 0xFFFFFF},
      {"gt", "Gujarat Titans", 0x1B2133, 0xFFFFFF},
      {"lsg", "Lucknow Super Giants", 0x0057A8, 0xFFFFFF},
  };
  const auto palette = TeamTheme::palette();
  ASSERT_EQ(palette.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const auto& [id, name, background, foreground] = expected[i];
    EXPECT_EQ(palette[i].teamId, id);
    EXPECT_EQ(palette[i].name, name);
    EXPECT_EQ(palette[i].background, RGB(background)) << id;
    EXPECT_EQ(palette[i].foreground, RGB(foreground)) << id;
  }
  EXPECT_EQ(palette.front(), TeamTheme::standard());
}

TEST(TeamThemes, AreFoundByTheirExactId) {
  EXPECT_EQ(TeamTheme::named("csk").foreground, RGB(0, 0, 0));
  EXPECT_EQ(TeamTheme::named("csk").background, RGB(0xF9CD05U));
  EXPECT_EQ(TeamTheme::named("CSK"), TeamTheme::standard());
  EXPECT_EQ(TeamTheme::named("csk "), TeamTheme::standard());
  EXPECT_EQ(TeamTheme::named(""), TeamTheme::standard());
  EXPECT_EQ(TeamTheme::named(std::nullopt), TeamTheme::standard());
  for (const TeamTheme& theme : TeamTheme::palette()) {
    EXPECT_EQ(TeamTheme::named(std::string(theme.teamId)), theme);
  }
}

TEST(TeamThemes, HaveTheirBackgroundAsAccentButForTheStandardOne) {
  EXPECT_EQ(TeamTheme::standard().accent(), std::nullopt);
  EXPECT_EQ(TeamTheme::named("gt").accent(), RGB(0x1B2133U));
  for (const TeamTheme& theme : TeamTheme::palette().subspan(1)) {
    EXPECT_EQ(theme.accent(), theme.background);
  }
}

TEST(AlertStyles, AreListedLoudestFirst) {
  EXPECT_EQ(allAlertStyles, (std::array{AlertStyle::big, AlertStyle::subtle}));
}

TEST(UsersCustomisation, IsTheStandardOneWhenNothingIsStored) {
  EXPECT_EQ(Customisation().themeTeamId, "default");
  EXPECT_EQ(Customisation().alertStyle, AlertStyle::big);
  EXPECT_EQ(Customisation(std::optional<Stored>()), Customisation());
  EXPECT_EQ(Customisation(Stored()), Customisation());
}

TEST(UsersCustomisation, ReadsOnlyTheExactStyle) {
  EXPECT_EQ(Customisation(Stored{{"alertStyle", "subtle"}}).alertStyle, AlertStyle::subtle);
  EXPECT_EQ(Customisation(Stored{{"alertStyle", "big"}}).alertStyle, AlertStyle::big);
  EXPECT_EQ(Customisation(Stored{{"alertStyle", "Subtle"}}).alertStyle, AlertStyle::big);
  EXPECT_EQ(Customisation(Stored{{"alertStyle", ""}}).alertStyle, AlertStyle::big);
}

TEST(UsersCustomisation, KeepsAThemeThatItDoesNotKnowAndLooksStandard) {
  const Customisation customisation(Stored{{"theme", "xyz"}, {"alertStyle", "subtle"}});
  EXPECT_EQ(customisation.themeTeamId, "xyz");
  EXPECT_EQ(customisation.appearance(),
            (PillAppearance{TeamTheme::standard(), AlertStyle::subtle}));
  EXPECT_EQ(customisation.stored(), (Stored{{"theme", "xyz"}, {"alertStyle", "subtle"}}));
}

TEST(UsersCustomisation, IsStoredAsTwoEntries) {
  EXPECT_EQ(Customisation("rr", AlertStyle::subtle).stored(),
            (Stored{{"theme", "rr"}, {"alertStyle", "subtle"}}));
  EXPECT_EQ(Customisation().stored(), (Stored{{"theme", "default"}, {"alertStyle", "big"}}));
}

TEST(UsersCustomisation, ReadsBackWhatItStored) {
  for (const TeamTheme& theme : TeamTheme::palette()) {
    for (const AlertStyle style : allAlertStyles) {
      const Customisation customisation(std::string(theme.teamId), style);
      EXPECT_EQ(Customisation(customisation.stored()), customisation);
      EXPECT_EQ(customisation.appearance(), (PillAppearance{theme, style}));
    }
  }
}

TEST(PillAppearances, AreStandardAndBigByThemselves) {
  EXPECT_EQ(PillAppearance(), Customisation().appearance());
}

}  // namespace
}  // namespace kestrow
