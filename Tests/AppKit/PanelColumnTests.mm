#include "Kestrow/AppKit/PanelColumn.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace kestrow::appkit {
namespace {

class Client : public PanelSurfaceClient {
 public:
  MOCK_METHOD(void, radioButtonPicked, (const std::string&), (override));
  MOCK_METHOD(void, popUpChanged, (const std::string&, int), (override));
  MOCK_METHOD(void, checkBoxToggled, (const std::string&, bool), (override));
  MOCK_METHOD(void, buttonPressed, (const std::string&), (override));
  MOCK_METHOD(void, clickedOutside, (), (override));
  MOCK_METHOD(bool, escapePressed, (), (override));
  MOCK_METHOD(void, resignedKey, (), (override));
};

class PanelColumnOnAMac : public testing::Test {
 protected:
  void show(std::vector<PanelNode> nodes) {
    column_.apply({.id = "box", .kind = PanelBox{.spacing = 6, .nodes = std::move(nodes)}});
  }
  NSArray<NSView*>* views() { return column_.stack().arrangedSubviews; }
  NSButton* button(NSUInteger place) { return static_cast<NSButton*>(views()[place]); }

  testing::StrictMock<Client> client_;
  PanelColumn column_{client_};
};

PanelNode radio(std::string id, bool isOn) {
  return {.id = std::move(id), .kind = PanelRadioButton{.title = "MI v CSK", .isOn = isOn}};
}

TEST_F(PanelColumnOnAMac, PutsTheNodesUnderEachOther) {
  show({{.id = "title", .kind = PanelHeader{"Followed match"}},
        {.id = "retry", .kind = PanelButton{"Retry"}}});
  ASSERT_EQ(views().count, 2U);
  EXPECT_TRUE([button(1).title isEqualToString:@"Retry"]);
  EXPECT_EQ(column_.stack().spacing, 6);
}

TEST_F(PanelColumnOnAMac, KeepsTheControlsOfNodesThatStay) {
  show({radio("a", true), radio("b", false)});
  NSView* b = views()[2];  // each has a line of details below
  show({radio("b", true), {.id = "c", .kind = PanelLabel{"Nothing else"}}});
  EXPECT_EQ(views()[0], b);
  EXPECT_EQ(views().count, 3U);
  EXPECT_EQ(button(0).state, NSControlStateValueOn);
}

TEST_F(PanelColumnOnAMac, ReportsAPickUnderTheNodesId) {
  show({radio("a", true), radio("b", false)});
  EXPECT_CALL(client_, radioButtonPicked("b"));
  [button(2) performClick:nil];
}

TEST_F(PanelColumnOnAMac, LetsAButtonTakeItselfAway) {
  show({{.id = "retry", .kind = PanelButton{"Retry"}}});
  EXPECT_CALL(client_, buttonPressed("retry")).WillOnce([this] { show({}); });
  [button(0) performClick:nil];
  EXPECT_EQ(views().count, 0U);
}

TEST_F(PanelColumnOnAMac, ReportsACheckBoxAsItIsNow) {
  show({{.id = "hide", .kind = PanelCheckBox{.title = "Hide pill"}}});
  auto* row = static_cast<NSStackView*>(views()[0]);
  auto* box = static_cast<NSButton*>(row.arrangedSubviews[0]);
  EXPECT_CALL(client_, checkBoxToggled("hide", true));
  [box performClick:nil];
}

TEST_F(PanelColumnOnAMac, KeepsPopUpItemsOfTheSameTitle) {
  show({{.id = "theme",
         .kind = PanelPopUp{.label = "Team", .items = {"A", "A", "B"}, .selected = 2}}});
  auto* row = static_cast<NSStackView*>(views()[0]);
  auto* popUp = static_cast<NSPopUpButton*>(row.arrangedSubviews[1]);
  EXPECT_EQ(popUp.numberOfItems, 3);
  EXPECT_EQ(popUp.indexOfSelectedItem, 2);
}

}  // namespace
}  // namespace kestrow::appkit
