#include "Kestrow/PanelNodes.hpp"
#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/Text.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>

#include <variant>
#include <vector>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

const std::vector<PanelNode>& nodes(const PanelNode& box) {
  return std::get<PanelBox>(box.kind).nodes;
}

template <class Kind>
const Kind& find(const PanelNode& box, std::string_view id) {
  const auto found = std::ranges::find(nodes(box), id, &PanelNode::id);
  EXPECT_NE(found, nodes(box).end()) << id;
  return std::get<Kind>(found->kind);
}

// A node in a few words.
struct Describe {
  std::string operator()(const PanelHeader& kind) const { return "header " + kind.text; }
  std::string operator()(const PanelSectionTitle& kind) const { return "title " + kind.text; }
  std::string operator()(const PanelLabel& kind) const { return "label " + kind.text; }
  std::string operator()(const PanelLines& kind) const { return "lines " + kind.name; }
  std::string operator()(const PanelRadioButton& kind) const {
    return (kind.isOn ? "(o) " : "( ) ") + kind.title + " / " + kind.detail;
  }
  std::string operator()(const PanelPopUp& kind) const { return "pop-up " + kind.label; }
  std::string operator()(const PanelCheckBox& kind) const {
    return (kind.isOn ? "[x] " : "[ ] ") + kind.title + " / " + kind.status + " / " + kind.detail;
  }
  std::string operator()(const PanelButton& kind) const { return "button " + kind.title; }
  std::string operator()(const PanelSeparator& /*kind*/) const { return "---"; }
  std::string operator()(const PanelBox& kind) const { return "box " + kind.name; }
};

std::vector<std::string> described(const PanelNode& box) {
  std::vector<std::string> texts;
  for (const auto& node : nodes(box)) texts.push_back(std::visit(Describe{}, node.kind));
  return texts;
}

PickerState loaded(bool isSample = false) {
  return {
      PickerState::Loaded{.sections = {{.title = "Live",
                                        .rows = {{.id = "m1",
                                                  .teams = "Mumbai Indians v Chennai Super Kings",
                                                  .competition = "IPL",
                                                  .detail = "MI 145/3 (15.2)",
                                                  .isLive = true,
                                                  .isFollowed = true}}},
                                       {.title = "Upcoming",
                                        .rows = {{.id = "m2",
                                                  .teams = "India v Australia",
                                                  .competition = "Test",
                                                  .detail = "Not started"}}}},
                          .isSample = isSample}};
}

PanelState state() {
  return {.matches = panel_nodes::matches(loaded(), "m1"), .log = panel_nodes::log({})};
}

TEST(PanelNodes, ThePanelListsEverythingInItsOrder) {
  EXPECT_THAT(
      described(panel_nodes::tree(state(), true)),
      ElementsAre("header Followed match", "box Followed match", "---", "header Key moments",
                  "label No key moments yet", "---", "header Customisation", "pop-up Team colours",
                  "pop-up Alert style", "---",
                  "[ ] Show in screen shares /  / Some capture tools may still show it.",
                  "[ ] Hide pill /  / Open Kestrow again to bring the pill back.",
                  "[ ] Launch at login / Off / ", "---", "button Quit Kestrow"));
}

TEST(PanelNodes, SpacingIsEightInThePanelAndSixInItsLists) {
  const auto tree = panel_nodes::tree(state(), true);
  EXPECT_EQ(std::get<PanelBox>(tree.kind).spacing, 8);
  EXPECT_EQ(find<PanelBox>(tree, "matches").spacing, 6);
  EXPECT_EQ(std::get<PanelLines>(panel_nodes::log({.entries = records::booms(1, 2)}).kind).spacing,
            6);
}

TEST(PanelNodes, NodesHaveIdsOfTheirOwn) {
  auto shown = state();
  shown.login = LoginItemStatus::needsApproval;
  std::vector<std::string> ids;
  const auto tree = panel_nodes::tree(shown, true);
  for (const auto& node : nodes(tree)) ids.push_back(node.id);
  std::ranges::sort(ids);
  EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end());
}

TEST(PanelNodes, PopUpsListAllThemesAndStyles) {
  auto shown = state();
  shown.theme = 3;
  shown.alertStyle = 1;
  const auto tree = panel_nodes::tree(shown, true);
  const auto& theme = find<PanelPopUp>(tree, PanelId::theme);
  ASSERT_EQ(theme.items.size(), TeamTheme::palette().size());
  EXPECT_EQ(theme.items.front(), "Default");
  EXPECT_EQ(theme.items[3], "Chennai Super Kings");
  EXPECT_EQ(theme.selected, 3);
  const auto& style = find<PanelPopUp>(tree, PanelId::alertStyle);
  EXPECT_THAT(style.items, ElementsAre("Big alert", "Subtle alert"));
  EXPECT_EQ(style.selected, 1);
}

TEST(PanelNodes, SwitchesShowTheirState) {
  auto shown = state();
  shown.share = true;
  shown.hide = true;
  const auto tree = panel_nodes::tree(shown, true);
  EXPECT_TRUE(find<PanelCheckBox>(tree, PanelId::share).isOn);
  EXPECT_TRUE(find<PanelCheckBox>(tree, PanelId::share).isEnabled);
  EXPECT_TRUE(find<PanelCheckBox>(tree, PanelId::hide).isOn);
}

TEST(PanelNodes, ADesktopThatLeavesNoChoiceAboutScreenSharesSaysSo) {
  for (const bool share : {false, true}) {
    auto shown = state();
    shown.share = share;
    const auto box = find<PanelCheckBox>(panel_nodes::tree(shown, false), PanelId::share);
    EXPECT_TRUE(box.isOn) << "the pill is seen, whatever the switch says";
    EXPECT_FALSE(box.isEnabled);
    EXPECT_EQ(box.detail, "This desktop can't keep the pill out of screen shares.");
  }
}

TEST(PanelNodes, LaunchAtLoginShowsItsStatus) {
  const auto login = [](LoginItemStatus status) {
    auto shown = state();
    shown.login = status;
    return described(panel_nodes::tree(shown, true));
  };
  const auto& row = [&](LoginItemStatus status) { return login(status)[12]; };
  EXPECT_EQ(row(LoginItemStatus::on), "[x] Launch at login / On / ");
  EXPECT_EQ(row(LoginItemStatus::onFallback), "[x] Launch at login / On (fallback) / ");
  EXPECT_EQ(row(LoginItemStatus::off), "[ ] Launch at login / Off / ");
  EXPECT_EQ(row(LoginItemStatus::needsApproval),
            "[x] Launch at login / Needs approval in System Settings / ");
}

TEST(PanelNodes, TheSettingsButtonIsThereForAnApprovalAlone) {
  for (const auto status : {LoginItemStatus::on, LoginItemStatus::onFallback, LoginItemStatus::off,
                            LoginItemStatus::needsApproval}) {
    auto shown = state();
    shown.login = status;
    const auto texts = described(panel_nodes::tree(shown, true));
    const auto count = std::ranges::count(texts, "button Open Login Items Settings…");
    EXPECT_EQ(count, status == LoginItemStatus::needsApproval ? 1 : 0);
    if (count == 1) {
      EXPECT_EQ(texts[13], "button Open Login Items Settings…");
    }
  }
}

TEST(PanelNodes, MatchesComeInSectionsWithTheFollowedOneOn) {
  EXPECT_THAT(
      described(panel_nodes::matches(loaded(), "m2")),
      ElementsAre("title Live", "( ) Mumbai Indians v Chennai Super Kings / IPL · MI 145/3 (15.2)",
                  "title Upcoming", "(o) India v Australia / Test · Not started"));
}

TEST(PanelNodes, WithoutAFollowedMatchNoneIsOnWhateverTheRowsSay) {
  EXPECT_THAT(
      described(panel_nodes::matches(loaded(), std::nullopt)),
      ElementsAre(testing::_, testing::StartsWith("( )"), testing::_, testing::StartsWith("( )")));
}

TEST(PanelNodes, AMatchsRadioButtonStandsForIt) {
  const auto box = panel_nodes::matches(loaded(), std::nullopt);
  EXPECT_EQ(nodes(box)[1].id, panel_nodes::idOfMatch("m1"));
  EXPECT_EQ(nodes(box)[3].id, panel_nodes::idOfMatch("m2"));
  for (const char* id : {"m1", "", ".", "a.b", "match-1.m1", "quit", "<b>\n漢"}) {
    EXPECT_EQ(panel_nodes::matchOf(panel_nodes::idOfMatch(id)), id);
    EXPECT_EQ(panel_nodes::matchOf(panel_nodes::idOfMatch(id, 12)), id);
  }
}

TEST(PanelNodes, OtherNodesStandForNoMatch) {
  for (const char* id : {"", "m1", "quit", "match-", "match-1", "xmatch-1.m1", "a.match-1.m1"}) {
    EXPECT_EQ(panel_nodes::matchOf(id), std::nullopt) << id;
  }
}

TEST(PanelNodes, EveryRowIsANodeOfItsOwnWhateverIdsTheServiceSends) {
  const PickerRow same{.id = "m1", .teams = "One"};
  PickerState state{PickerState::Loaded{
      .sections = {{.title = "Live", .rows = {same, {.id = "section-Live"}, {.id = "sample"}}},
                   {.title = "Upcoming", .rows = {same, {.id = "2.m1"}, {.id = ""}, same}}},
      .isSample = true}};
  const auto box = panel_nodes::matches(state, "m1");
  std::vector<std::string> ids;
  for (const auto& node : nodes(box)) ids.push_back(node.id);
  EXPECT_EQ(ids.size(), 10U);
  std::ranges::sort(ids);
  EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end());
}

TEST(PanelNodes, OfMoreMatchesThanAnyoneReadsTheFirstAreOffered) {
  constexpr auto most = panel_nodes::mostMatches;
  const auto offered = [](std::size_t live, std::size_t upcoming) {
    PickerState::Loaded list{.sections = {{.title = "Live"}, {.title = "Upcoming"}}};
    list.sections[0].rows.resize(live);
    list.sections[1].rows.resize(upcoming);
    const auto box = panel_nodes::matches({list}, std::nullopt);
    const auto isTitle = [](const PanelNode& node) { return node.id.starts_with("section-"); };
    const auto titles = std::ranges::count_if(nodes(box), isTitle);
    return std::pair(titles, std::ssize(nodes(box)) - titles);
  };
  EXPECT_EQ(offered(most - 1, 1), (std::pair<std::ptrdiff_t, std::ptrdiff_t>(2, most)));
  EXPECT_EQ(offered(most - 1, 2), (std::pair<std::ptrdiff_t, std::ptrdiff_t>(2, most)));
  EXPECT_EQ(offered(most, 1), (std::pair<std::ptrdiff_t, std::ptrdiff_t>(1, most)));
  EXPECT_EQ(offered(most + 1, 1), (std::pair<std::ptrdiff_t, std::ptrdiff_t>(1, most)));
}

TEST(PanelNodes, SampleDataIsCalledThat) {
  EXPECT_EQ(described(panel_nodes::matches(loaded(true), "m1")).front(), "label Sample data");
  EXPECT_THAT(described(panel_nodes::matches({PickerState::Empty{true}}, "m1")),
              ElementsAre("label Sample data", "label No live or upcoming matches"));
}

TEST(PanelNodes, WithoutMatchesThePickerSaysWhy) {
  EXPECT_THAT(described(panel_nodes::matches({PickerState::Empty{false}}, "m1")),
              ElementsAre("label No live or upcoming matches"));
  EXPECT_THAT(described(panel_nodes::matches({PickerState::Loading{}}, "m1")),
              ElementsAre("label Loading matches…"));
  const auto error = panel_nodes::matches({PickerState::Error{}}, "m1");
  EXPECT_THAT(described(error), ElementsAre("label Couldn't load matches", "button Retry"));
  EXPECT_EQ(nodes(error)[1].id, PanelId::retry);
}

TEST(PanelNodes, TheLogComesNewestFirst) {
  const auto log = panel_nodes::log(
      {.entries = {records::boom(1, BoomKind::four), records::boom(2, BoomKind::wicket)}});
  const auto& lines = std::get<PanelLines>(log.kind);
  EXPECT_EQ(lines.name, "Key moments");
  EXPECT_THAT(lines.lines, ElementsAre("WICKET — R Sharma (MI)", "FOUR — R Sharma (MI)"));
}

TEST(PanelNodes, AnEmptyLogSaysSo) {
  EXPECT_EQ(std::get<PanelLabel>(panel_nodes::log({}).kind).text, "No key moments yet");
}

TEST(PanelNodes, EndlessTextsAreCut) {
  const std::string endless(10'000, 'y');
  PickerState state{PickerState::Loaded{
      .sections = {{.title = "Live", .rows = {{.id = "m", .teams = endless, .detail = endless}}}}}};
  const auto box = panel_nodes::matches(state, std::nullopt);
  EXPECT_THAT(std::get<PanelRadioButton>(nodes(box)[1].kind).title, EndsWith("y…"));
  EXPECT_THAT(std::get<PanelRadioButton>(nodes(box)[1].kind).detail, EndsWith("y…"));
  auto event = records::boom(1);
  event.batter = endless;
  const auto log = panel_nodes::log({.entries = {event}});
  EXPECT_THAT(std::get<PanelLines>(log.kind).lines.front(), EndsWith("y…"));
}

TEST(PanelNodes, LineBreaksInWhatTheServiceSendsAreSpaces) {
  PickerState state{PickerState::Loaded{.sections = {{.title = "Live",
                                                      .rows = {{.id = "m",
                                                                .teams = "MI\nv\tCSK",
                                                                .competition = "IPL\n\n",
                                                                .detail = "1\r\n2"}}}}}};
  const auto box = panel_nodes::matches(state, std::nullopt);
  const auto& button = std::get<PanelRadioButton>(nodes(box)[1].kind);
  EXPECT_EQ(button.title, "MI v CSK");
  EXPECT_EQ(button.detail, "IPL   · 1 2");
  auto event = records::boom(1, BoomKind::four);
  event.batter = "R\nSharma";
  const auto log = panel_nodes::log({.entries = {event}});
  EXPECT_THAT(std::get<PanelLines>(log.kind).lines, ElementsAre("FOUR — R Sharma (MI)"));
}

TEST(PanelNodes, AControlsHelpIsHowItStandsElseWhatIsUnderIt) {
  EXPECT_EQ((PanelRadioButton{.title = "MI v CSK", .detail = "IPL"}).help(), "IPL");
  EXPECT_EQ((PanelCheckBox{.title = "Hide", .detail = "Note"}).help(), "Note");
  EXPECT_EQ((PanelCheckBox{.title = "Login", .status = "On", .detail = "Note"}).help(), "On");
  EXPECT_EQ((PanelCheckBox{.title = "Login"}).help(), "");
}

TEST(PanelNodes, MarkupStaysText) {
  PickerState state{PickerState::Loaded{
      .sections = {{.title = "Live", .rows = {{.id = "m", .teams = "<b>x</b> v &amp;"}}}}}};
  const auto box = panel_nodes::matches(state, std::nullopt);
  EXPECT_EQ(std::get<PanelRadioButton>(nodes(box)[1].kind).title, "<b>x</b> v &amp;");
}

}  // namespace
}  // namespace kestrow
