#include "Kestrow/Qt/PanelControls.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelPopUpRow.hpp"
#include "Kestrow/Qt/PanelRows.hpp"
#include "Kestrow/Qt/QtAccessiblePanel.hpp"
#include "Tests/Qt/QtPanelFixture.hpp"

#include <QAccessible>
#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

namespace kestrow::qt {
namespace {

using testing::ElementsAre;

QAccessibleInterface& accessible(QObject& object) {
  return *QAccessible::queryAccessibleInterface(&object);
}

// Role and name of everything that has one, in the order a screen reader walks.
void walk(QAccessibleInterface& element, std::vector<std::string>& found) {
  static const std::map<int, std::string> roles{
      {QAccessible::Dialog, "dialog"},   {QAccessible::Heading, "heading"},
      {QAccessible::StaticText, "text"}, {QAccessible::RadioButton, "radio"},
      {QAccessible::CheckBox, "check"},  {QAccessible::ComboBox, "combo"},
      {QAccessible::Button, "button"},   {QAccessible::List, "list"},
      {QAccessible::ListItem, "item"},   {QAccessible::Grouping, "group"}};
  const auto role = roles.find(element.role());
  const auto name = element.text(QAccessible::Name).toStdString();
  if (role != roles.end() && !name.empty()) found.push_back(role->second + " " + name);
  if (element.role() == QAccessible::ComboBox) return;
  for (int i = 0; i < element.childCount(); ++i) walk(*element.child(i), found);
}

class QtAccessiblePanelTest : public QtPanelTest {};

TEST_F(QtAccessiblePanelTest, IsADialogWithNamedControlsInReadingOrder) {
  open(box({{.id = "h", .kind = PanelHeader{"Followed match"}},
            box({{.id = "live", .kind = PanelSectionTitle{"Live"}}, radio("m", true, "A v B")},
                "matches", "Followed match"),
            label("note", "A note"),
            popUp("p", 0),
            checkBox("c", true),
            button("q", "Quit")}));
  std::vector<std::string> found;
  walk(accessible(window), found);
  EXPECT_THAT(found, ElementsAre("dialog Kestrow", "heading Followed match", "group Followed match",
                                 "heading Live", "radio A v B", "text A note", "text Team colours",
                                 "combo Default", "check Hide pill", "button Quit"));
}

TEST_F(QtAccessiblePanelTest, APopUpIsLabelledByItsTitle) {
  window.setContent(box({popUp("p", 0)}));
  const auto labels = accessible(only<PopUpButton>()).relations(QAccessible::Label);
  ASSERT_EQ(labels.size(), 1);
  EXPECT_EQ(labels[0].first->text(QAccessible::Name), "Team colours");
}

TEST_F(QtAccessiblePanelTest, ReadingOrderFollowsControlsThatCameLater) {
  window.setContent(box({button("b", "B")}));
  window.setContent(box({button("a", "A"), button("b", "B"), label("c", "C")}));
  std::vector<std::string> found;
  walk(accessible(window), found);
  EXPECT_THAT(found, ElementsAre("dialog Kestrow", "button A", "button B", "text C"));
}

TEST_F(QtAccessiblePanelTest, ARowTellsItsSecondLine) {
  window.setContent(box({radio("m", false, "A v B", "IPL · MI 145/3"), checkBox("c", false)}));
  EXPECT_EQ(accessible(only<RadioRow>()).text(QAccessible::Description), "IPL · MI 145/3");
  EXPECT_EQ(accessible(only<CheckRow>()).text(QAccessible::Description), "A note");
}

TEST_F(QtAccessiblePanelTest, ARowIsOneElementWithItsStateAndItsPress) {
  open(box({radio("m", false), checkBox("c", true), checkBox("fixed", true, false)}));
  auto& row = accessible(only<RadioRow>());
  EXPECT_EQ(row.rect().size(), only<RadioRow>().size());
  EXPECT_TRUE(row.state().checkable);
  EXPECT_FALSE(row.state().checked);
  row.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(row.state().checked);
  auto& on = accessible(*all<CheckRow>()[0]);
  on.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_FALSE(on.state().checked);
  on.actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_TRUE(on.state().focused);
  auto& fixed = accessible(*all<CheckRow>()[1]);
  fixed.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(fixed.state().checked);
  EXPECT_TRUE(fixed.state().disabled);
  EXPECT_THAT(client.events, ElementsAre("picked m", "c off"));
}

TEST_F(QtAccessiblePanelTest, TheLogIsAListOfItsLines) {
  open(box({log(3)}));
  auto& list = accessible(only<LogLines>());
  EXPECT_EQ(list.role(), QAccessible::List);
  EXPECT_EQ(list.text(QAccessible::Name), "Key moments");
  ASSERT_EQ(list.childCount(), 3);
  auto* const newest = list.child(0);
  EXPECT_EQ(newest->role(), QAccessible::ListItem);
  EXPECT_EQ(newest->text(QAccessible::Name), "SIX — event 3");
  EXPECT_EQ(newest->parent(), &list);
  EXPECT_EQ(list.indexOfChild(newest), 0);
  EXPECT_EQ(newest->rect().topLeft(), only<LogLines>().mapToGlobal(QPoint(0, 0)));
  EXPECT_EQ(list.childAt(newest->rect().center().x(), newest->rect().center().y()), newest);
  EXPECT_EQ(list.childAt(0, 0), nullptr);
  EXPECT_EQ(list.child(3), nullptr);
  EXPECT_EQ(list.child(-1), nullptr);
}

TEST_F(QtAccessiblePanelTest, ALineStaysItselfWhenANewerOneComes) {
  window.setContent(box({log(3)}));
  auto& list = accessible(only<LogLines>());
  auto* const line = list.child(0);
  window.setContent(box({log(4)}));
  EXPECT_EQ(list.indexOfChild(line), 1);
  EXPECT_EQ(line->text(QAccessible::Name), "SIX — event 3");
  EXPECT_EQ(list.child(0)->text(QAccessible::Name), "SIX — event 4");
}

TEST_F(QtAccessiblePanelTest, ALineThatHasGoneSaysNothing) {
  window.setContent(box({log(3)}));
  auto& list = accessible(only<LogLines>());
  auto* const line = list.child(0);
  window.setContent(box({log(2)}));
  EXPECT_FALSE(line->isValid());
  EXPECT_EQ(line->text(QAccessible::Name), "");
  EXPECT_TRUE(line->rect().isNull());
  EXPECT_TRUE(line->state().invalid);
}

TEST_F(QtAccessiblePanelTest, ALineOutOfSightSaysSo) {
  open(box({log(100)}));
  auto& list = accessible(only<LogLines>());
  EXPECT_FALSE(list.child(0)->state().offscreen);
  EXPECT_TRUE(list.child(99)->state().offscreen);
}

}  // namespace
}  // namespace kestrow::qt
