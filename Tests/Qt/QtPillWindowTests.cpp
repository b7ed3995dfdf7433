#include "Kestrow/Qt/QtAccessiblePill.hpp"
#include "Kestrow/Qt/QtPillWindow.hpp"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QScreen>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace kestrow::qt {
namespace {

class Client final : public PillSurfaceClient {
 public:
  int drawings = 0;
  int clicks = 0;
  std::string label = "MI v CSK";
  Rect bounds;
  std::vector<Rect> allBounds;
  double scale = 0;

  void draw(Canvas& canvas, const Rect& area, double pixels) override {
    ++drawings;
    bounds = area;
    allBounds.push_back(area);
    scale = pixels;
    canvas.fill(Path::rect(area), {{0, 0, 1}, 1});
  }
  void click() override { ++clicks; }
  std::string accessibilityLabel() const override { return label; }
};

DotAppearance dot(bool pulses) {
  return {.frame = {10, 9, 6, 6},
          .cornerRadius = 3,
          .color = {{1, 0, 0}, 1},
          .shadowColor = {{1, 0, 0}, 1},
          .shadowRadius = 3,
          .shadowOpacity = 0,
          .pulses = pulses};
}

// Keeps what is painted of a window.
class Paintings final : public QObject {
 public:
  std::vector<QRect> areas;

  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      areas.push_back(static_cast<QPaintEvent*>(event)->region().boundingRect());
    }
    return false;
  }
};

// Runs the event loop until the condition holds; false when it does not within the time.
bool waitFor(const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.hasExpired(5000)) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  }
  return true;
}

class QtPillWindowTest : public testing::Test {
 protected:
  // Before the first window: Qt asks for a window's element once, and keeps what it got.
  static void SetUpTestSuite() { installAccessiblePill(); }

  // At the top of the screen.
  Rect hanging(double width, double height) const {
    return {100, static_cast<double>(screen_.height()) - height, width, height};
  }

  void show() {
    window_->setFrame(hanging(200, 24), Seconds::zero());
    window_->orderFront();
    ASSERT_TRUE(waitFor([&] { return client_.drawings > 0; }));
  }

  void press(Qt::MouseButton button) {
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(5, 5), window_->mapToGlobal(QPointF(5, 5)),
                      button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(window_.get(), &event);
  }

  QRect screen_ = QGuiApplication::primaryScreen()->geometry();
  Client client_;
  std::unique_ptr<QtPillWindow> window_ = std::make_unique<QtPillWindow>(client_);
};

TEST_F(QtPillWindowTest, IsNotThereBeforeItIsOrderedToTheFront) {
  window_->setFrame(hanging(200, 24), Seconds::zero());
  EXPECT_FALSE(window_->isVisible());
  window_->orderFront();
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(QtPillWindowTest, TakesNoFocusAndNoFrame) {
  const auto flags = window_->windowFlags();
  EXPECT_TRUE(flags & Qt::WindowDoesNotAcceptFocus);
  EXPECT_TRUE(flags & Qt::FramelessWindowHint);
  EXPECT_TRUE(flags & Qt::WindowStaysOnTopHint);
  EXPECT_TRUE(flags & Qt::X11BypassWindowManagerHint);
  EXPECT_EQ(window_->windowFlags() & Qt::WindowType_Mask, Qt::Tool);
  EXPECT_EQ(window_->focusPolicy(), Qt::NoFocus);
  EXPECT_TRUE(window_->testAttribute(Qt::WA_TranslucentBackground));
  EXPECT_TRUE(window_->testAttribute(Qt::WA_ShowWithoutActivating));
  EXPECT_FALSE(window_->testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(QtPillWindowTest, HangsWhereItsFrameSays) {
  window_->setFrame(hanging(200, 24), Seconds::zero());
  EXPECT_EQ(window_->geometry(), QRect(100, screen_.top(), 200, 24));
  EXPECT_EQ(window_->frame(), hanging(200, 24));
}

TEST_F(QtPillWindowTest, GlidesToANewFrameWithItsTopEdgeFixed) {
  show();
  window_->setFrame(hanging(120, 40), Seconds(0.2));
  EXPECT_EQ(window_->frame(), hanging(120, 40));
  EXPECT_EQ(window_->height(), 24);
  std::set<int> heights;
  std::set<int> tops;
  EXPECT_TRUE(waitFor([&] {
    heights.insert(window_->height());
    tops.insert(window_->y());
    return window_->geometry() == QRect(100, screen_.top(), 120, 40);
  }));
  EXPECT_EQ(tops, std::set<int>{screen_.top()});
  EXPECT_GT(heights.size(), 3U);
}

TEST_F(QtPillWindowTest, ItsContentStaysInItsPlaceWhileItGlides) {
  show();
  client_.allBounds.clear();
  window_->setFrame({140, static_cast<double>(screen_.height()) - 40, 120, 40}, Seconds(0.2));
  EXPECT_TRUE(waitFor([&] { return client_.bounds == Rect{0, 0, 120, 40}; }));
  EXPECT_GT(client_.allBounds.size(), 3U);
  for (const Rect& bounds : client_.allBounds) {
    EXPECT_EQ(bounds.maxY(), 40);
    EXPECT_NEAR(bounds.midX(), 60, 1);
  }
  EXPECT_GT(client_.allBounds.front().width, 120);
}

TEST_F(QtPillWindowTest, AFrameAtOnceEndsTheGlide) {
  show();
  window_->setFrame(hanging(120, 40), Seconds(10));
  window_->setFrame(hanging(180, 24), Seconds::zero());
  EXPECT_EQ(window_->geometry(), QRect(100, screen_.top(), 180, 24));
  QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  EXPECT_EQ(window_->geometry(), QRect(100, screen_.top(), 180, 24));
}

TEST_F(QtPillWindowTest, TheSameFrameAtOnceEndsTheGlideToo) {
  show();
  window_->setFrame(hanging(120, 40), Seconds(10));
  window_->setFrame(hanging(120, 40), Seconds::zero());
  EXPECT_EQ(window_->geometry(), QRect(100, screen_.top(), 120, 40));
}

TEST_F(QtPillWindowTest, AHiddenWindowDoesNotGlide) {
  window_->setFrame(hanging(200, 24), Seconds(10));
  EXPECT_EQ(window_->geometry(), QRect(100, screen_.top(), 200, 24));
}

TEST_F(QtPillWindowTest, DrawsInItsOwnCoordinates) {
  show();
  EXPECT_EQ(client_.bounds, (Rect{0, 0, 200, 24}));
  EXPECT_EQ(client_.scale, window_->devicePixelRatioF());
}

TEST_F(QtPillWindowTest, DrawsAnewOnlyWhenAskedTo) {
  show();
  const int before = client_.drawings;
  window_->grab();
  EXPECT_EQ(client_.drawings, before);
  window_->setNeedsDisplay();
  window_->grab();
  EXPECT_EQ(client_.drawings, before + 1);
}

TEST_F(QtPillWindowTest, ThePulseRepaintsTheDotAndDrawsNothingAnew) {
  show();
  window_->setDot(dot(true));
  window_->grab();
  const int before = client_.drawings;
  std::set<QRgb> colours;
  EXPECT_TRUE(waitFor([&] {
    colours.insert(window_->grab(QRect(13, 12, 1, 1)).toImage().pixel(0, 0));
    return colours.size() > 4;
  }));
  EXPECT_EQ(client_.drawings, before);
}

TEST_F(QtPillWindowTest, AFrameOfThePulsePaintsTheDotAndNoMore) {
  show();
  window_->setDot(dot(true));
  Paintings paintings;
  window_->installEventFilter(&paintings);
  ASSERT_TRUE(waitFor([&] { return !paintings.areas.empty(); }));
  paintings.areas.clear();
  EXPECT_TRUE(waitFor([&] { return paintings.areas.size() > 3; }));
  for (const QRect& area : paintings.areas) EXPECT_TRUE(QRect(5, 4, 16, 16).contains(area));
}

TEST_F(QtPillWindowTest, PaintsTheDotOnceMoreWhenThePulseEnds) {
  show();
  window_->setDot(dot(true));
  Paintings paintings;
  window_->installEventFilter(&paintings);
  ASSERT_TRUE(waitFor([&] { return paintings.areas.size() > 3; }));
  paintings.areas.clear();
  window_->setScreenSeen(false);
  EXPECT_TRUE(waitFor([&] { return !paintings.areas.empty(); }));
}

TEST_F(QtPillWindowTest, AStillDotLooksTheSameAllTheTime) {
  show();
  window_->setDot(dot(false));
  const QImage first = window_->grab().toImage();
  EXPECT_EQ(first.pixelColor(13, 12), QColor(Qt::red));
  EXPECT_EQ(first.pixelColor(30, 12), QColor(Qt::blue));
  window_->setDot(std::nullopt);
  EXPECT_EQ(window_->grab().toImage().pixelColor(13, 12), QColor(Qt::blue));
}

TEST_F(QtPillWindowTest, ThePulseStandsStillWhileNobodySeesTheScreen) {
  show();
  window_->setDot(dot(true));
  window_->setScreenSeen(false);
  const auto colour = [&] { return window_->grab(QRect(13, 12, 1, 1)).toImage().pixel(0, 0); };
  EXPECT_EQ(QColor(colour()), QColor(Qt::red));
  window_->setScreenSeen(true);
  EXPECT_TRUE(waitFor([&] { return QColor(colour()) != QColor(Qt::red); }));
}

TEST_F(QtPillWindowTest, ThePulseStandsStillWhileHidden) {
  show();
  window_->setDot(dot(true));
  window_->hide();
  const auto colour = [&] {
    return QColor(window_->grab(QRect(13, 12, 1, 1)).toImage().pixel(0, 0));
  };
  EXPECT_EQ(colour(), QColor(Qt::red));
}

TEST_F(QtPillWindowTest, ThePrimaryButtonClicksAndNoOtherDoes) {
  show();
  press(Qt::RightButton);
  press(Qt::MiddleButton);
  EXPECT_EQ(client_.clicks, 0);
  press(Qt::LeftButton);
  EXPECT_EQ(client_.clicks, 1);
}

TEST_F(QtPillWindowTest, IsAButtonForAssistiveTechnology) {
  auto* const element = QAccessible::queryAccessibleInterface(window_.get());
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(element->role(), QAccessible::Button);
  EXPECT_EQ(element->childCount(), 0);
  EXPECT_EQ(element->text(QAccessible::Name), "MI v CSK");
  auto* const actions = element->actionInterface();
  ASSERT_NE(actions, nullptr);
  EXPECT_EQ(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
  actions->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(client_.clicks, 1);
  actions->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(client_.clicks, 1);
}

TEST_F(QtPillWindowTest, ANewLabelIsItsNewName) {
  client_.label = "MI v CSK, 145/3";
  window_->accessibilityLabelChanged();
  EXPECT_EQ(QAccessible::queryAccessibleInterface(window_.get())->text(QAccessible::Name),
            "MI v CSK, 145/3");
}

}  // namespace
}  // namespace kestrow::qt
