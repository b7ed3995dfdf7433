#include "Kestrow/Qt/PanelControls.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelPopUpRow.hpp"
#include "Kestrow/Qt/PanelRows.hpp"
#include "Kestrow/Qt/QtPanelWindow.hpp"
#include "Tests/Qt/QtPanelFixture.hpp"

#include <QAbstractItemView>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <gmock/gmock.h>

namespace kestrow::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(QtPanelTest, NoControlHasTheKeyboardAtFirst) {
  open(box({radio("a", true), button("b", "Quit")}));
  EXPECT_TRUE(window.isKey());
  EXPECT_EQ(QApplication::focusWidget(), &window);
}

TEST_F(QtPanelTest, IsNeverWiderThanItsColumn) {
  window.setContent(box({label("a", std::string(3000, 'w')),
                         radio("b", false, std::string(3000, 'w'), std::string(3000, 'w')),
                         {.id = "c", .kind = PanelHeader{std::string(3000, 'w')}}}));
  EXPECT_EQ(window.width(), 340);
  EXPECT_EQ(window.scrollArea().widget()->width(), 340);
  for (const auto* child : all<QWidget>()) EXPECT_LE(child->width(), 340);
  EXPECT_GT(window.fittingHeight(), 500) << "long words break";
}

TEST_F(QtPanelTest, ItsHeightIsThatOfItsContent) {
  window.setContent(box({button("a", "A")}));
  EXPECT_EQ(window.fittingHeight(), 16 + 26 + 16);
  window.setContent(box({button("a", "A"), button("b", "B")}));
  EXPECT_EQ(window.fittingHeight(), 16 + 26 + 8 + 26 + 16);
  window.setContent(box({button("a", "A"), box({}, "empty"), button("b", "B")}));
  EXPECT_EQ(window.fittingHeight(), 16 + 26 + 8 + 8 + 26 + 16);
}

TEST_F(QtPanelTest, IsPlacedFromTheBottomLeft) {
  const auto screen = QGuiApplication::primaryScreen()->geometry();
  open(box({}), 300);
  EXPECT_EQ(window.geometry(), QRect(100, screen.height() - 400, 340, 300));
}

TEST_F(QtPanelTest, ContentThatIsTallerScrollsAndShowsABar) {
  open(box({log(10)}));
  EXPECT_TRUE(all<PanelScrollBar>().isEmpty());
  window.setContent(box({log(100)}));
  EXPECT_TRUE(only<PanelScrollBar>().isVisible());
  key(Qt::Key_End);
  EXPECT_EQ(scrolled(), window.scrollArea().verticalScrollBar()->maximum());
  EXPECT_EQ(scrolled(), static_cast<int>(window.fittingHeight()) - 400);
  key(Qt::Key_PageUp);
  EXPECT_LT(scrolled(), static_cast<int>(window.fittingHeight()) - 400);
  key(Qt::Key_Home);
  EXPECT_EQ(scrolled(), 0);
  key(Qt::Key_Down);
  EXPECT_GT(scrolled(), 0);
  key(Qt::Key_Up);
  EXPECT_EQ(scrolled(), 0);
  key(Qt::Key_PageDown);
  EXPECT_GT(scrolled(), 100);
}

TEST_F(QtPanelTest, ANewMomentLeavesWhatIsReadInItsPlace) {
  open(box({label("a", "Above"), log(100)}));
  scrollTo(700);
  window.setContent(box({label("a", "Above"), log(101)}));
  const int line = only<LogLines>().lineRect(1).top() - only<LogLines>().lineRect(0).top();
  EXPECT_EQ(scrolled(), 700 + line);
  window.setContent(box({label("a", std::string(100, 'w')), log(101)}));
  EXPECT_GT(scrolled(), 700 + line);
}

TEST_F(QtPanelTest, AtTheTopTheNewestStaysInSight) {
  open(box({log(100)}));
  window.setContent(box({log(101)}));
  EXPECT_EQ(scrolled(), 0);
}

TEST_F(QtPanelTest, WhatIsReadCanGo) {
  open(box({label("a", "Above"), log(100), button("b", "B")}));
  scrollTo(700);
  window.setContent(box({label("a", "Above"), button("b", "B")}));
  EXPECT_EQ(scrolled(), 0);
}

TEST_F(QtPanelTest, ItScrollsToItsTopWhenToldTo) {
  open(box({log(100)}));
  scrollTo(700);
  window.scrollToTop();
  EXPECT_EQ(scrolled(), 0);
}

TEST_F(QtPanelTest, EscapeIsReportedWhileItIsWatched) {
  open(box({button("a", "A")}));
  key(Qt::Key_Escape);
  EXPECT_THAT(client.events, IsEmpty());
  window.installMonitors();
  key(Qt::Key_Escape);
  EXPECT_THAT(client.events, ElementsAre("escape"));
  window.removeMonitors();
  key(Qt::Key_Escape);
  EXPECT_THAT(client.events, ElementsAre("escape"));
}

TEST_F(QtPanelTest, EscapeReachesItFromAnyControl) {
  open(box({radio("r", true), checkBox("c", false), popUp("p", 0), button("b", "B")}));
  window.installMonitors();
  for (std::size_t i = 1; i <= 4; ++i) {
    key(Qt::Key_Tab);
    key(Qt::Key_Escape);
    EXPECT_EQ(client.events.size(), i);
  }
}

TEST_F(QtPanelTest, EscapeInAnOpenListClosesTheListAlone) {
  open(box({popUp("p", 0)}));
  window.installMonitors();
  auto& choices = only<PopUpButton>();
  choices.setFocus();
  choices.showPopup();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(choices.view()->window()));
  QTest::keyClick(choices.view(), Qt::Key_Escape);
  EXPECT_FALSE(choices.view()->isVisible());
  EXPECT_THAT(client.events, IsEmpty());
}

TEST_F(QtPanelTest, LosingTheKeyboardIsReported) {
  open(box({}));
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_THAT(client.events, ElementsAre("resigned"));
}

TEST_F(QtPanelTest, AWindowManagerMayCloseItAndTheProgramEnd) {
  open(box({}));
  EXPECT_TRUE(window.close());
  EXPECT_FALSE(window.isVisible());
  EXPECT_THAT(client.events, testing::Contains("resigned"));
}

TEST_F(QtPanelTest, TabGoesRoundAllControlsInTheirOrder) {
  open(box({checkBox("c", false), box({radio("r", false), radio("s", true)}, "matches"),
            popUp("p", 0), button("b", "B"), checkBox("d", false, false)}));
  std::vector<QWidget*> stops;
  for (int i = 0; i < 5; ++i) {
    key(Qt::Key_Tab);
    stops.push_back(QApplication::focusWidget());
  }
  EXPECT_THAT(stops, ElementsAre(all<CheckRow>()[0], all<RadioRow>()[1], &only<PopUpButton>(),
                                 &only<PushButton>(), all<CheckRow>()[0]));
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), &only<PushButton>());
}

TEST_F(QtPanelTest, TabFollowsTheOrderOfControlsThatCameLater) {
  open(box({button("b", "B"), button("d", "D")}));
  window.setContent(box({button("a", "A"), button("b", "B"), button("c", "C"), button("d", "D")}));
  QStringList titles;
  for (int i = 0; i < 4; ++i) {
    key(Qt::Key_Tab);
    titles.append(qobject_cast<PushButton*>(QApplication::focusWidget())->text());
  }
  EXPECT_EQ(titles.join(""), "ABCD");
}

TEST_F(QtPanelTest, TabScrollsToTheControl) {
  open(box({log(100), button("b", "B")}));
  key(Qt::Key_Tab);
  EXPECT_GT(scrolled(), 1000);
  EXPECT_FALSE(only<PushButton>().visibleRegion().isEmpty());
}

TEST_F(QtPanelTest, EditingShortcutsReachTheControlThatEdits) {
  open(box({}));
  QLineEdit edit(&window);
  edit.setText("score");
  edit.show();
  edit.setFocus();
  QTest::keyClick(&window, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(edit.selectedText(), "score");
  QTest::keyClick(&window, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(edit.text(), "");
  QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(edit.text(), "score");
  QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(edit.text(), "");
  QTest::keyClick(&window, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(edit.text(), "score");
  edit.selectAll();
  QTest::keyClick(&window, Qt::Key_X, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(edit.text(), "score") << "with another modifier it is no shortcut of ours";
}

}  // namespace
}  // namespace kestrow::qt
