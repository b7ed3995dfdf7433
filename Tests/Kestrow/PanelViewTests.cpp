#include "Kestrow/PanelView.hpp"
#include "KestrowCore/Task.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using Answer = FeedResult<MatchesResponse>;

// A login service in the test's hand.
struct Login {
  LoginServiceStatus status = LoginServiceStatus::notRegistered;
  bool isRefused = false;
  int settingsOpened = 0;
};

class FakeLoginService final : public LoginService {
 public:
  explicit FakeLoginService(Login& login) : login_(login) {}
  LoginServiceStatus status() const override { return login_.status; }
  std::expected<void, LoginError> registerItem() override {
    if (!login_.isRefused) login_.status = LoginServiceStatus::enabled;
    return {};
  }
  std::expected<void, LoginError> unregister() override {
    if (!login_.isRefused) login_.status = LoginServiceStatus::notRegistered;
    return {};
  }
  void openLoginItemsSettings() override { ++login_.settingsOpened; }

 private:
  Login& login_;
};

class PanelControllerTest : public testing::Test {
 protected:
  PanelControllerTest() { desktop_.excludesFromCaptures = true; }

  PanelController& panel() { return *panel_; }
  PanelSurfaceRecord& surface() { return *desktop_.panels.at(0); }
  PanelSurfaceClient& client() { return *surface().client; }

  void answer(Answer response) {
    ASSERT_FALSE(loads_.empty());
    loads_.back().complete(std::move(response));
  }
  void openWithMatches() {
    panel().show();
    answer(records::live({records::match("m1"), records::match("m2")}));
  }
  void pick(std::string_view matchId, int occurrence = 1) {
    client().radioButtonPicked(panel_nodes::idOfMatch(matchId, occurrence));
  }
  const PanelCheckBox& checkBox(std::string_view id) { return *surface().find<PanelCheckBox>(id); }
  int selected(std::string_view id) { return surface().find<PanelPopUp>(id)->selected; }
  std::vector<std::string> matchesOn() {
    std::vector<std::string> ids;
    for (const auto& node : surface().find<PanelBox>("matches")->nodes) {
      const auto* radio = std::get_if<PanelRadioButton>(&node.kind);
      if (radio && radio->isOn) ids.push_back(panel_nodes::matchOf(node.id).value());
    }
    return ids;
  }
  // The only text of the picker.
  std::string pickerText() {
    const auto& nodes = surface().find<PanelBox>("matches")->nodes;
    return std::get<PanelLabel>(nodes.at(0).kind).text;
  }

  TemporaryFolder folder_;
  LocalStore store_{folder_.path()};
  ManualMainThread mainThread_;
  FakeDesktop desktop_;
  FakeDefaults defaults_;
  std::vector<Pending<Answer>> loads_;
  std::vector<std::string> renders_;
  Login login_;
  Poller poller_{[] { return Pending<Answer>().task(); },
                 std::make_unique<TaskPollScheduler>(mainThread_), &store_};
  Pending<FeedResult<ProMatchResult>> events_;
  ProPoller pro_{[this](const std::string&, std::optional<std::int64_t>) { return events_.task(); },
                 store_, mainThread_.clock()};
  PillController pill_{{}, defaults_, desktop_};
  MatchPicker picker_{[this] { return loads_.emplace_back().task(); }, std::nullopt,
                      [](Date) { return std::string("soon"); }};
  LoginItem loginItem_{std::make_unique<FakeLoginService>(login_), nullptr};
  std::unique_ptr<PanelController> panel_ = std::make_unique<PanelController>(
      store_, poller_, pro_, pill_, picker_, loginItem_, [this] { renders_.emplace_back("pill"); },
      defaults_, desktop_);
};

TEST_F(PanelControllerTest, HasNoWindowUntilItIsShown) {
  EXPECT_THAT(desktop_.panels, IsEmpty());
  EXPECT_FALSE(panel().isVisible());
  panel().refresh();
  panel().refreshPicker();
  panel().close();
  EXPECT_FALSE(panel().escapePressed());
  EXPECT_THAT(desktop_.panels, IsEmpty());
}

TEST_F(PanelControllerTest, OpensInPlaceWithTheKeyboardAndWatches) {
  panel().show();
  EXPECT_TRUE(panel().isVisible());
  EXPECT_THAT(surface().calls, ElementsAre("frame", "top", "show", "watch"));
  EXPECT_EQ(
      surface().frames.back(),
      PanelController::frameFor(desktop_.attachedScreens, std::nullopt, pill_.windowFrame(), 500));
  EXPECT_EQ(pickerText(), "Loading matches…");
  EXPECT_THAT(loads_, SizeIs(1));
}

TEST_F(PanelControllerTest, WithoutAPillStaysOnTheScreenThatItHasTheKeyboardOn) {
  const auto second = FakeDesktop::screen({1440, 0, 1000, 900}, 24);
  desktop_.attachedScreens.push_back(second);
  defaults_.setBoolean(DefaultsKey::pillHidden, true);
  pill_.rebuild(false);
  desktop_.screenWithKeyboard = second;
  panel().show();
  EXPECT_EQ(surface().frames.back().midX(), 1940);
}

TEST_F(PanelControllerTest, OpensAtItsTopAndStaysWhereItIsWhenShownAgain) {
  panel().show();
  surface().calls.clear();
  panel().show();
  EXPECT_THAT(surface().calls, Not(Contains("top")));
  panel().close();
  panel().show();
  EXPECT_THAT(surface().calls, Contains("top"));
}

TEST_F(PanelControllerTest, EveryOpeningLoadsAnewInTheSameWindow) {
  openWithMatches();
  panel().close();
  panel().show();
  EXPECT_THAT(desktop_.panels, SizeIs(1));
  EXPECT_THAT(loads_, SizeIs(2));
  EXPECT_EQ(pickerText(), "Loading matches…");
}

TEST_F(PanelControllerTest, ThePickerLearnsTheFollowedMatchBeforeItLoads) {
  poller_.follow("m2");
  panel().show();
  EXPECT_EQ(picker_.followedId, "m2");
}

TEST_F(PanelControllerTest, ClosesOnAnOutsideClick) {
  panel().show();
  client().clickedOutside();
  EXPECT_FALSE(panel().isVisible());
  EXPECT_FALSE(surface().hasMonitors);
}

TEST_F(PanelControllerTest, ClosesWhenItLosesTheKeyboard) {
  panel().show();
  client().resignedKey();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelControllerTest, EscapeClosesItWhileItHasTheKeyboard) {
  panel().show();
  EXPECT_TRUE(client().escapePressed());
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(PanelControllerTest, EscapeInAnotherWindowIsLeftAlone) {
  panel().show();
  surface().isKey = false;
  EXPECT_FALSE(client().escapePressed());
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, ClosesOnce) {
  panel().show();
  client().clickedOutside();
  surface().calls.clear();
  client().resignedKey();
  client().clickedOutside();
  EXPECT_THAT(surface().calls, IsEmpty());
}

TEST_F(PanelControllerTest, ThePillClosesWhatItOpened) {
  panel().toggle();
  EXPECT_TRUE(panel().isVisible());
  panel().toggle();
  EXPECT_FALSE(panel().isVisible());
  panel().toggle();
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, AFurtherShowKeepsItOpen) {
  panel().show();
  panel().show();
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, LoadedMatchesShowWithTheFollowedOneOn) {
  poller_.follow("m2");
  openWithMatches();
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
}

TEST_F(PanelControllerTest, ThePollersMatchCountsNotTheOneOfTheLoad) {
  poller_.follow("m1");
  openWithMatches();
  poller_.follow("m2");
  panel().refreshPicker();
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
}

TEST_F(PanelControllerTest, PickingAMatchFollowsStoresAndShowsIt) {
  poller_.follow("m1");
  openWithMatches();
  pick("m2");
  EXPECT_EQ(poller_.state().followedMatchId, "m2");
  EXPECT_EQ(store_.followedMatchId(), "m2");
  EXPECT_EQ(picker_.followedId, "m2");
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(PanelControllerTest, APickThatIsNoMatchIsIgnored) {
  poller_.follow("m1");
  openWithMatches();
  for (const char* id : {"", "m2", "quit"}) client().radioButtonPicked(id);
  EXPECT_EQ(poller_.state().followedMatchId, "m1");
}

TEST_F(PanelControllerTest, APickWithoutAMatchIdIsTakenBack) {
  poller_.follow("m1");
  openWithMatches();
  const auto before = surface().contentsSet;
  pick("");
  EXPECT_EQ(poller_.state().followedMatchId, "m1");
  EXPECT_GT(surface().contentsSet, before) << "the control must be told";
}

TEST_F(PanelControllerTest, AMatchThatIsListedTwiceCanBePickedInEitherRow) {
  panel().show();
  answer(records::live({records::match("m1"), records::match("m2"), records::match("m1")}));
  pick("m1", 2);
  EXPECT_EQ(poller_.state().followedMatchId, "m1");
  EXPECT_THAT(matchesOn(), ElementsAre("m1", "m1"));
  pick("m2");
  EXPECT_THAT(matchesOn(), ElementsAre("m2"));
}

TEST_F(PanelControllerTest, AMatchMayHaveTheIdOfAnotherControl) {
  panel().show();
  answer(records::live({records::match("quit"), records::match("section-Live")}));
  pick("quit");
  EXPECT_EQ(desktop_.quits, 0);
  EXPECT_EQ(poller_.state().followedMatchId, "quit");
  EXPECT_THAT(matchesOn(), ElementsAre("quit"));
}

TEST_F(PanelControllerTest, AFailedLoadOffersToRetry) {
  panel().show();
  answer(std::unexpected(FeedError{}));
  EXPECT_EQ(pickerText(), "Couldn't load matches");
  client().buttonPressed("retry");
  EXPECT_THAT(loads_, SizeIs(2));
  EXPECT_EQ(pickerText(), "Loading matches…");
  answer(MatchesResponse{});
  EXPECT_EQ(pickerText(), "No live or upcoming matches");
}

TEST_F(PanelControllerTest, ALoadThatEndsAfterClosingDoesNotOpenIt) {
  panel().show();
  panel().close();
  const auto frames = surface().frames.size();
  answer(MatchesResponse{});
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(surface().frames.size(), frames);
}

TEST_F(PanelControllerTest, ALoadThatEndsAfterThePanelHasGoneDoesNoHarm) {
  panel().show();
  panel_.reset();
  answer(MatchesResponse{});
  EXPECT_FALSE(surface().exists);
}

TEST_F(PanelControllerTest, ContentThatChangesHeightMovesTheOpenWindow) {
  panel().show();
  surface().fittingHeight = 321;
  panel().refresh();
  EXPECT_EQ(surface().frames.back().height, 321);
  surface().fittingHeight = 322;
  panel().refreshPicker();
  EXPECT_EQ(surface().frames.back().height, 322);
}

TEST_F(PanelControllerTest, AnOpenWindowGoesWithThePillToAnotherScreen) {
  desktop_.screensChanged.notify();
  panel().show();
  desktop_.attachedScreens = {FakeDesktop::screen({0, 0, 800, 600}, 24)};
  desktop_.screensChanged.notify();
  EXPECT_EQ(surface().frames.back(), (Rect{230, 70, 340, 500}));
  panel().close();
  const auto frames = surface().frames.size();
  desktop_.screensChanged.notify();
  EXPECT_EQ(surface().frames.size(), frames);
}

TEST_F(PanelControllerTest, TheLogComesNewestFirst) {
  poller_.follow("m1");
  pro_.startUpdate(poller_.state());
  events_.complete(ProMatchResult{ProMatchPayload{.match = records::match("m1"),
                                                  .newestEventId = 2,
                                                  .events = {},
                                                  .keyMoments = records::booms(1, 2)}});
  panel().show();
  const auto* log = surface().find<PanelLines>("log");
  ASSERT_NE(log, nullptr);
  EXPECT_THAT(log->lines, SizeIs(2));
}

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

TEST_F(PanelControllerTest, QuitEndsTheProgram) {
  panel().show();
  client().buttonPressed("quit");
  EXPECT_EQ(desktop_.quits, 1);
}

TEST_F(PanelControllerTest, ControlsThatAreNotThereDoNothing) {
  panel().show();
  client().buttonPressed("other");
  client().checkBoxToggled("other", true);
  EXPECT_EQ(desktop_.quits, 0);
  EXPECT_THAT(defaults_.values, IsEmpty());
}

TEST_F(PanelControllerTest, ADesktopThatCannotHideWindowsFromCapturesSaysSo) {
  desktop_.excludesFromCaptures = false;
  panel().show();
  EXPECT_FALSE(checkBox("share").isEnabled);
}

}  // namespace
}  // namespace kestrow
