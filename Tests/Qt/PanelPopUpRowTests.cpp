#include "Kestrow/Qt/PanelPopUpRow.hpp"
#include "Tests/Qt/QtPanelFixture.hpp"

#include <QAbstractItemView>
#include <QImage>
#include <QScrollBar>
#include <gmock/gmock.h>

namespace kestrow::qt {
namespace {

class PanelPopUpRowTest : public QtPanelTest {
 protected:
  // The window of the open list.
  QWidget& openList(const PanelNode& content) {
    open(box({content}));
    only<PopUpButton>().showPopup();
    auto& list = *only<PopUpButton>().view()->window();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&list));
    return list;
  }
};

TEST_F(PanelPopUpRowTest, TheListIsASheetWithRoundCorners) {
  auto& list = openList(popUp("p", 0));
  const QImage picture = list.grab().toImage();
  ASSERT_TRUE(picture.hasAlphaChannel());
  for (const QPoint corner :
       {QPoint(0, 0), QPoint(picture.width() - 1, 0), QPoint(0, picture.height() - 1),
        QPoint(picture.width() - 1, picture.height() - 1)}) {
    EXPECT_EQ(picture.pixelColor(corner).alpha(), 0);
  }
  EXPECT_EQ(picture.pixelColor(picture.rect().center()).alpha(), 255);
  EXPECT_TRUE(list.mask().isEmpty()) << "a mask's edge would be jagged";
}

TEST_F(PanelPopUpRowTest, TheListShowsAllItsChoicesAsWideAsTheButton) {
  auto& list = openList(popUp("p", 0));
  const auto& choices = only<PopUpButton>();
  EXPECT_EQ(list.width(), choices.width());
  EXPECT_EQ(list.x(), choices.mapToGlobal(QPoint(0, 0)).x());
  EXPECT_EQ(list.height(), 2 * 26 + 2 * 4);
}

TEST_F(PanelPopUpRowTest, AListOfLongNamesIsWiderThanTheButton) {
  auto& list =
      openList({.id = "p",
                .kind = PanelPopUp{
                    .label = "Team colours", .items = {std::string(40, 'w')}, .selected = 0}});
  EXPECT_GT(list.width(), only<PopUpButton>().width() + 100);
}

TEST_F(PanelPopUpRowTest, ALongListScrollsWithTheSameBarAsThePanel) {
  PanelPopUp many{.label = "Team colours", .items = {}, .selected = 0};
  for (int i = 0; i < 30; ++i) many.items.push_back("Team " + std::to_string(i));
  auto& list = openList({.id = "p", .kind = many});
  EXPECT_EQ(list.height(), 14 * 26 + 2 * 4);
  const auto* bar = list.findChild<PanelScrollBar*>();
  ASSERT_NE(bar, nullptr);
  EXPECT_TRUE(bar->isVisible());
  auto& view = *only<PopUpButton>().view();
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_EQ(bar->value(), view.verticalScrollBar()->maximum());
  EXPECT_EQ(view.viewport()->width(), list.width()) << "the bar lies over the choices";
}

TEST_F(PanelPopUpRowTest, AChoiceOfTheListIsReported) {
  openList(popUp("p", 0));
  auto& view = *only<PopUpButton>().view();
  const QRect second = view.visualRect(view.model()->index(1, 0));
  QTest::mouseMove(view.viewport(), second.center());
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, second.center());
  EXPECT_THAT(client.events, testing::ElementsAre("p = 1"));
  EXPECT_FALSE(view.isVisible());
}

}  // namespace
}  // namespace kestrow::qt
