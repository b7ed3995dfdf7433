#include "Kestrow/PanelView.hpp"
#include "Tests/Kestrow/PanelViewFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace kestrow {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

TEST_F(PanelControllerTest, ShowsTheStoredCustomisation) {
  ASSERT_TRUE(store_.setCustomisation({"csk", AlertStyle::subtle}));
  panel().show();
  EXPECT_EQ(selected("theme"), 3);
  EXPECT_EQ(selected("alert-style"), 1);
}

TEST_F(PanelControllerTest, AThemeThatIsNoLongerThereShowsAsTheFirstAndStaysStored) {
  ASSERT_TRUE(store_.setCustomisation({"gone", AlertStyle::big}));
  panel().show();
  EXPECT_EQ(selected("theme"), 0);
  EXPECT_EQ(store_.customisation().themeTeamId, "gone");
}

TEST_F(PanelControllerTest, AChoiceIsStoredAndThePillDrawnAnew) {
  panel().show();
  client().popUpChanged("theme", 3);
  EXPECT_EQ(store_.customisation(), Customisation("csk", AlertStyle::big));
  EXPECT_THAT(renders_, SizeIs(1));
  client().popUpChanged("alert-style", 1);
  EXPECT_EQ(store_.customisation(), Customisation("csk", AlertStyle::subtle));
  EXPECT_THAT(renders_, SizeIs(2));
}

TEST_F(PanelControllerTest, NoChoiceCountsAsTheFirst) {
  ASSERT_TRUE(store_.setCustomisation({"csk", AlertStyle::subtle}));
  panel().show();
  client().popUpChanged("theme", -1);
  EXPECT_EQ(store_.customisation(), Customisation("default", AlertStyle::subtle));
  client().popUpChanged("alert-style", -1);
  EXPECT_EQ(store_.customisation(), Customisation("default", AlertStyle::big));
}

TEST_F(PanelControllerTest, APopUpThatIsNotThereChangesNothing) {
  panel().show();
  client().popUpChanged("other", 3);
  EXPECT_EQ(store_.customisation(), Customisation());
  EXPECT_THAT(renders_, IsEmpty());
}

TEST_F(PanelControllerTest, AChoiceThatCannotBeSavedStaysUntilTheNextRefresh) {
  panel().show();
  std::filesystem::create_directories(store_.fileUrl() / "in the way");
  client().popUpChanged("theme", 3);
  EXPECT_THAT(renders_, SizeIs(1));
  panel().refreshPicker();
  EXPECT_EQ(selected("theme"), 3);
  panel().refresh();
  EXPECT_EQ(selected("theme"), 0);
}

TEST_F(PanelControllerTest, SwitchesShowTheUsersDefaults) {
  panel().show();
  EXPECT_FALSE(checkBox("share").isOn);
  EXPECT_FALSE(checkBox("hide").isOn);
  defaults_.setBoolean("showInScreenShares", true);
  defaults_.setBoolean("pillHidden", true);
  panel().refresh();
  EXPECT_TRUE(checkBox("share").isOn);
  EXPECT_TRUE(checkBox("hide").isOn);
}

TEST_F(PanelControllerTest, SharingIsStoredAndReachesThePill) {
  panel().show();
  client().checkBoxToggled("share", true);
  EXPECT_TRUE(defaults_.boolean("showInScreenShares"));
  EXPECT_EQ(desktop_.surface()->readable, true);
  client().checkBoxToggled("share", false);
  EXPECT_FALSE(defaults_.boolean("showInScreenShares"));
  EXPECT_EQ(desktop_.surface()->readable, false);
}

TEST_F(PanelControllerTest, SharingWithAHiddenPillIsStored) {
  defaults_.setBoolean("pillHidden", true);
  pill_.rebuild(false);
  panel().show();
  client().checkBoxToggled("share", true);
  EXPECT_TRUE(defaults_.boolean("showInScreenShares"));
}

TEST_F(PanelControllerTest, HidingTakesThePillAwayAndShowingDrawsItAnew) {
  panel().show();
  client().checkBoxToggled("hide", true);
  EXPECT_TRUE(defaults_.boolean("pillHidden"));
  EXPECT_EQ(pill_.windowFrame(), std::nullopt);
  EXPECT_THAT(renders_, IsEmpty());
  client().checkBoxToggled("hide", false);
  EXPECT_FALSE(defaults_.boolean("pillHidden"));
  EXPECT_NE(pill_.windowFrame(), std::nullopt);
  EXPECT_THAT(renders_, SizeIs(1));
}

TEST_F(PanelControllerTest, AToggledSwitchStaysThroughARefreshOfTheMatches) {
  panel().show();
  client().checkBoxToggled("share", true);
  client().checkBoxToggled("hide", true);
  answer(MatchesResponse{});
  EXPECT_TRUE(checkBox("share").isOn);
  EXPECT_TRUE(checkBox("hide").isOn);
}

TEST_F(PanelControllerTest, LaunchAtLoginShowsWhatCameOfIt) {
  panel().show();
  EXPECT_EQ(checkBox("login").status, "Off");
  client().checkBoxToggled("login", true);
  EXPECT_TRUE(checkBox("login").isOn);
  EXPECT_EQ(checkBox("login").status, "On");
  client().checkBoxToggled("login", false);
  EXPECT_FALSE(checkBox("login").isOn);
}

TEST_F(PanelControllerTest, LaunchAtLoginThatIsRefusedTurnsBackOff) {
  panel().show();
  login_.isRefused = true;
  const auto before = surface().contentsSet;
  client().checkBoxToggled("login", true);
  EXPECT_FALSE(checkBox("login").isOn);
  EXPECT_GT(surface().contentsSet, before) << "the control must be told";
}

TEST_F(PanelControllerTest, AnApprovalCanBeGivenInTheSettings) {
  login_.status = LoginServiceStatus::requiresApproval;
  panel().show();
  ASSERT_NE(surface().find<PanelButton>("login-items"), nullptr);
  client().buttonPressed("login-items");
  EXPECT_EQ(login_.settingsOpened, 1);
  login_.status = LoginServiceStatus::enabled;
  panel().refresh();
  EXPECT_EQ(surface().find<PanelButton>("login-items"), nullptr);
}

TEST_F(PanelControllerTest, ADesktopThatCannotHideWindowsFromCapturesSaysSo) {
  desktop_.excludesFromCaptures = false;
  panel().show();
  EXPECT_FALSE(checkBox("share").isEnabled);
}

}  // namespace
}  // namespace kestrow
