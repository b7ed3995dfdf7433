#include "Kestrow/Qt/QtDesktop.hpp"
#include "Kestrow/Qt/SingleInstance.hpp"
#include "Tests/Support/QtPrivateBus.hpp"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace kestrow::qt {
namespace {

class Client final : public PillSurfaceClient {
 public:
  int drawings = 0;

  void draw(Canvas& /*canvas*/, const Rect& /*area*/, double /*scale*/) override { ++drawings; }
  void click() override {}
  std::string accessibilityLabel() const override { return "MI v CSK"; }
};

class QtDesktopTest : public testing::Test {
 protected:
  void showPill() {
    pill_ = desktop_.makePillSurface(client_);
    pill_->setFrame({100, 500, 200, 24}, Seconds::zero());
    pill_->orderFront();
  }

  SingleInstance instance_{QDBusConnection(QStringLiteral("none"))};
  QtDesktop desktop_{instance_};
  Client client_;
  std::unique_ptr<PillSurface> pill_;
  int calls_ = 0;
};

TEST_F(QtDesktopTest, WhatComesAfterTheFirstPictureComesOnceItIsPainted) {
  showPill();
  desktop_.afterFirstPicture([&] { ++calls_; });
  int paintings = 0;
  auto& window = dynamic_cast<QtPillWindow&>(*pill_);
  const auto subscription = window.firstPainted.subscribe([&] {
    ++paintings;
    EXPECT_EQ(calls_, 0);  // the picture is not sent yet
  });
  EXPECT_TRUE(eventually([&] { return paintings == 1; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls_, 1);

  pill_->setNeedsDisplay();
  const int drawings = client_.drawings;
  EXPECT_TRUE(eventually([&] { return client_.drawings > drawings; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(paintings, 1);
  EXPECT_EQ(calls_, 1);
}

TEST_F(QtDesktopTest, WhatComesAfterTheFirstPictureWaitsForNoPillThatIsHidden) {
  pill_ = desktop_.makePillSurface(client_);
  desktop_.afterFirstPicture([&] { ++calls_; });
  EXPECT_EQ(calls_, 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(calls_, 1);
  showPill();
  EXPECT_TRUE(eventually([&] { return client_.drawings > 0; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls_, 1);
}

TEST_F(QtDesktopTest, WhatComesAfterTheFirstPictureDoesNotWaitLongForOneThatNobodySees) {
  showPill();
  dynamic_cast<QWidget&>(*pill_).setUpdatesEnabled(false);
  desktop_.afterFirstPicture([&] { ++calls_; });
  QElapsedTimer clock;
  clock.start();
  EXPECT_TRUE(eventually([&] { return calls_ == 1; }));
  EXPECT_GE(clock.elapsed(), 900);
}

}  // namespace
}  // namespace kestrow::qt
