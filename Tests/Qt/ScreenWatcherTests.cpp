#include "Kestrow/Qt/ScreenWatcher.hpp"

#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace kestrow::qt {
namespace {

TEST(ScreenWatcher, TheMainScreenIsTheOneWithTheWindowThatHasTheKeyboard) {
  EXPECT_EQ(ScreenWatcher::mainScreen(), std::nullopt);
  {
    QWidget window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_EQ(ScreenWatcher::mainScreen(), ScreenWatcher::screens().front());
  }
  EXPECT_EQ(ScreenWatcher::mainScreen(), std::nullopt);
}

}  // namespace
}  // namespace kestrow::qt
