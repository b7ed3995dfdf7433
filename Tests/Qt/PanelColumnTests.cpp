#include "Kestrow/Qt/PanelColumn.hpp"
#include "Kestrow/Qt/PanelControls.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelPopUpRow.hpp"
#include "Kestrow/Qt/PanelRows.hpp"
#include "Tests/Qt/QtPanelFixture.hpp"

#include <QPointer>
#include <gmock/gmock.h>

namespace kestrow::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PanelColumnTest : public QtPanelTest {};

TEST_F(PanelColumnTest, AChangedNodeKeepsItsControl) {
  window.setContent(box({radio("a", true), label("t", "one"), log(3), popUp("p", 0)}));
  auto* const row = &only<RadioRow>();
  auto* const text = &only<WrapLabel>();
  auto* const lines = &only<LogLines>();
  auto* const choices = &only<PopUpButton>();
  window.setContent(box({radio("a", false, "Other"), label("t", "two"), log(4), popUp("p", 1)}));
  EXPECT_EQ(&only<RadioRow>(), row);
  EXPECT_EQ(row->accessibleName(), "Other");
  EXPECT_FALSE(row->isChecked());
  EXPECT_EQ(&only<WrapLabel>(), text);
  EXPECT_EQ(text->text(), "two");
  EXPECT_EQ(&only<LogLines>(), lines);
  EXPECT_EQ(lines->lineCount(), 4);
  EXPECT_EQ(&only<PopUpButton>(), choices);
  EXPECT_EQ(choices->currentIndex(), 1);
}

TEST_F(PanelColumnTest, ControlsAreKeptWhenOthersComeAndGo) {
  window.setContent(box({button("a", "A"), button("b", "B"), button("c", "C")}));
  const auto before = all<PushButton>();
  window.setContent(box({button("c", "C"), button("x", "X"), button("b", "B")}));
  const auto after = all<PushButton>();
  ASSERT_EQ(after.size(), 3);
  EXPECT_EQ(after[0], before[2]);
  EXPECT_EQ(after[1]->text(), "X");
  EXPECT_EQ(after[2], before[1]);
  EXPECT_LT(after[0]->y(), after[1]->y());
  EXPECT_LT(after[1]->y(), after[2]->y());
}

TEST_F(PanelColumnTest, AnotherKindUnderTheSameIdIsAnotherControl) {
  window.setContent(box({label("log", "No key moments yet")}));
  window.setContent(box({log(1)}));
  EXPECT_TRUE(all<WrapLabel>().isEmpty());
  EXPECT_EQ(only<LogLines>().lineCount(), 1);
}

TEST_F(PanelColumnTest, TwoNodesOfOneIdAreTwoControls) {
  window.setContent(box({radio("m", false, "One"), radio("m", false, "Two")}));
  window.setContent(box({button("new", "N"), radio("m", false, "One"), radio("m", false, "Two")}));
  const auto rows = all<RadioRow>();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[0]->accessibleName(), "One");
  EXPECT_EQ(rows[1]->accessibleName(), "Two");
  EXPECT_LT(rows[0]->y(), rows[1]->y());
}

TEST_F(PanelColumnTest, TheKeyboardStaysWithAControlThatStays) {
  open(box({box({radio("a", true), radio("b", false)}, "matches"), button("q", "Quit")}));
  key(Qt::Key_Tab);
  auto* const focus = QApplication::focusWidget();
  ASSERT_EQ(focus, all<RadioRow>()[0]);
  window.setContent(box({label("new", "News"),
                         box({radio("z", false), radio("a", true), radio("b", false)}, "matches"),
                         button("q", "Quit")}));
  EXPECT_EQ(QApplication::focusWidget(), focus);
}

TEST_F(PanelColumnTest, TheKeyboardGoesToThePanelWhenItsControlGoes) {
  open(box({button("retry", "Retry"), button("q", "Quit")}));
  key(Qt::Key_Tab);
  window.setContent(box({label("loading", "Loading"), button("q", "Quit")}));
  EXPECT_EQ(QApplication::focusWidget(), &window);
}

TEST_F(PanelColumnTest, AButtonMayTakeItselfAway) {
  open(box({button("retry", "Retry")}));
  const QPointer<PushButton> pressed = &only<PushButton>();
  client.onEvent = [&](const std::string&) { window.setContent(box({label("l", "Loading")})); };
  QTest::mouseClick(pressed, Qt::LeftButton);
  EXPECT_THAT(client.events, ElementsAre("pressed retry"));
  EXPECT_TRUE(all<PushButton>().isEmpty());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(pressed.isNull());
}

TEST_F(PanelColumnTest, ArrowsPickInAGroupAndKeepTheKeyboard) {
  std::string followed = "a";
  const auto content = [&] {
    return box({box(
        {radio("a", followed == "a"), radio("b", followed == "b"), radio("c", followed == "c")},
        "matches")});
  };
  open(content());
  client.onEvent = [&](const std::string& event) {
    followed = event.substr(event.size() - 1);
    window.setContent(content());
  };
  key(Qt::Key_Tab);
  key(Qt::Key_Down);
  key(Qt::Key_Down);
  key(Qt::Key_Up);
  EXPECT_THAT(client.events, ElementsAre("picked b", "picked c", "picked b"));
  EXPECT_EQ(QApplication::focusWidget(), all<RadioRow>()[1]);
  EXPECT_TRUE(all<RadioRow>()[1]->isChecked());
  EXPECT_FALSE(all<RadioRow>()[0]->isChecked());
}

TEST_F(PanelColumnTest, ArrowsPickAlsoBeforeAnythingIsPicked) {
  open(box({box({radio("a", false), radio("b", false), radio("c", false)}, "matches")}));
  key(Qt::Key_Tab);
  EXPECT_THAT(client.events, IsEmpty());
  key(Qt::Key_Down);
  EXPECT_THAT(client.events, ElementsAre("picked b"));
  EXPECT_EQ(QApplication::focusWidget(), all<RadioRow>()[1]);
  key(Qt::Key_Down);
  EXPECT_THAT(client.events, ElementsAre("picked b", "picked c"));
}

TEST_F(PanelColumnTest, AGroupOfMatchesIsOneTabStop) {
  std::vector<PanelNode> matches;
  matches.reserve(200);
  for (int i = 0; i < 200; ++i) matches.push_back(radio(std::to_string(i), i == 150));
  open(box({box(matches, "matches"), button("q", "Quit")}));
  key(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), all<RadioRow>()[150]);
  key(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), &only<PushButton>());
}

TEST_F(PanelColumnTest, WithoutAPickTheFirstOfAGroupTakesTheTab) {
  open(box({box({radio("a", false), radio("b", false)}, "matches")}));
  key(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), all<RadioRow>()[0]);
  key(Qt::Key_Space);
  EXPECT_THAT(client.events, ElementsAre("picked a"));
}

TEST_F(PanelColumnTest, AClickAnywhereOnARowPicksIt) {
  open(box({radio("a", true), radio("b", false)}));
  auto* const row = all<RadioRow>()[1];
  QTest::mouseClick(row, Qt::LeftButton, {}, QPoint(row->width() - 2, row->height() - 2));
  EXPECT_THAT(client.events, ElementsAre("picked b"));
}

TEST_F(PanelColumnTest, WhatTheUserChangedIsTakenBackWhenTheContentSaysSo) {
  const auto content =
      box({radio("a", true), radio("b", false), checkBox("c", false), popUp("p", 0)});
  open(content);
  QTest::mouseClick(all<RadioRow>()[1], Qt::LeftButton);
  QTest::mouseClick(&only<CheckRow>(), Qt::LeftButton);
  only<PopUpButton>().setFocus();
  key(Qt::Key_Down);
  EXPECT_THAT(client.events, ElementsAre("picked b", "c on", "p = 1"));
  window.setContent(content);
  EXPECT_TRUE(all<RadioRow>()[0]->isChecked());
  EXPECT_FALSE(all<RadioRow>()[1]->isChecked());
  EXPECT_FALSE(only<CheckRow>().isChecked());
  EXPECT_EQ(only<PopUpButton>().currentIndex(), 0);
  EXPECT_EQ(client.events.size(), 3U) << "only the user's doing is reported";
}

TEST_F(PanelColumnTest, NoneOfAGroupMayBeOn) {
  window.setContent(box({radio("a", true), radio("b", false)}));
  window.setContent(box({radio("a", false), radio("b", false)}));
  EXPECT_FALSE(all<RadioRow>()[0]->isChecked());
}

TEST_F(PanelColumnTest, ASwitchThatIsFixedCannotBeToggled) {
  open(box({checkBox("c", true, false)}));
  QTest::mouseClick(&only<CheckRow>(), Qt::LeftButton);
  EXPECT_TRUE(only<CheckRow>().isChecked());
  EXPECT_THAT(client.events, IsEmpty());
}

TEST_F(PanelColumnTest, ReturnPressesAButton) {
  open(box({button("q", "Quit")}));
  key(Qt::Key_Tab);
  key(Qt::Key_Return);
  EXPECT_THAT(client.events, ElementsAre("pressed q"));
}

TEST_F(PanelColumnTest, TheWheelIsLeftToThePanelAndDoesNotChoose) {
  open(box({popUp("p", 0), log(100)}));
  auto& choices = only<PopUpButton>();
  const QPointF at(5, 5);
  QWheelEvent wheel(at, choices.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&choices, &wheel);
  EXPECT_EQ(choices.currentIndex(), 0);
  EXPECT_FALSE(wheel.isAccepted());
  EXPECT_THAT(client.events, IsEmpty());
}

TEST_F(PanelColumnTest, MarkupIsShownAsItIs) {
  window.setContent(box({label("l", "<b>x</b>"), radio("r", false, "<b>x</b> v &y", "<i>z</i>")}));
  EXPECT_EQ(only<WrapLabel>().textFormat(), Qt::PlainText);
  EXPECT_EQ(only<WrapLabel>().text(), "<b>x</b>");
  EXPECT_EQ(only<RadioRow>().accessibleName(), "<b>x</b> v &y");
  EXPECT_EQ(only<RadioRow>().accessibleDescription(), "<i>z</i>");
}

TEST_F(PanelColumnTest, ATextOfManyLinesIsAsHighAsTheyAre) {
  window.setContent(box({label("l", "one")}));
  const int one = only<WrapLabel>().height();
  window.setContent(box({label("l", "one\ntwo\r\nthree")}));
  EXPECT_NEAR(only<WrapLabel>().height(), 3 * one, 2);
}

TEST_F(PanelColumnTest, RightToLeftNamesStartAtTheSameEdge) {
  open(box({radio("r", false, "منتخب باكستان v India", "دوري")}));
  const auto picture = only<RadioRow>().grab().toImage();
  const auto inkAt = [&](int x) {
    for (int y = 0; y < picture.height() / 2; ++y) {
      if (qGray(picture.pixel(x, y)) > 150) return true;
    }
    return false;
  };
  int first = 30;  // right of the mark
  while (first < picture.width() && !inkAt(first)) ++first;
  EXPECT_LT(first, 45);
}

}  // namespace
}  // namespace kestrow::qt
