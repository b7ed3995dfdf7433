#include "Kestrow/Qt/QtPillWindow.hpp"

#include "Kestrow/Qt/QtCanvas.hpp"
#include "Kestrow/Qt/QtCoordinates.hpp"

#include <QBackingStore>
#include <QEasingCurve>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <chrono>
#include <utility>

namespace kestrow::qt {

namespace {

QRectF primaryScreen() {
  const auto* screen = QGuiApplication::primaryScreen();
  return screen ? screen->geometry() : QRectF();
}

}  // namespace

QtPillWindow::QtPillWindow(PillSurfaceClient& client)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint |
                           Qt::NoDropShadowWindowHint),
      client_(client),
      dot_([this] { repaint(dotArea_); }) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(QString::fromStdString(client.accessibilityLabel()));
  motion_.setEasingCurve(QEasingCurve::InOutSine);
  connect(&motion_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { place(value.toRect()); });
  x11_ = std::make_unique<X11Window>(*this, [this] {
    pictureIsOld_ = true;
    updateSeen();
    update();
  });
}

QtPillWindow::~QtPillWindow() = default;

Rect QtPillWindow::frame() const {
  return toPoints(target_, primaryScreen());
}

void QtPillWindow::setFrame(const Rect& frame, Seconds duration) {
  const QRect target = fromPoints(frame, primaryScreen());
  target_ = target;
  motion_.stop();
  if (duration <= Seconds::zero() || !isVisible()) {
    place(target_);
    return;
  }
  motion_.setStartValue(geometry());
  motion_.setEndValue(target_);
  motion_.setDuration(
      static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count()));
  motion_.start();
}

// When the screen gets another scale, Qt keeps the pixels of the window and of what is painted on,
// and takes a frame of as many points for the one that it has.
void QtPillWindow::place(const QRect& frame) {
  // The shape stays behind when its window grows: without one, the window takes every click until
  // it is cut anew.
  if (frame.size() != size()) x11_->unshape();
  setGeometry(frame);
  if (!windowHandle() || windowHandle()->geometry() == frame) return;
  windowHandle()->setGeometry(frame);
  if (backingStore()) backingStore()->resize(frame.size());
  update();
}

void QtPillWindow::setDot(const std::optional<DotAppearance>& dot) {
  update(dotArea_);
  dot_.show(dot);
  dotArea_ = dot_.area(bounds());
  update(dotArea_);
  updateSeen();
}

void QtPillWindow::setNeedsDisplay() {
  pictureIsOld_ = true;
  update();
}

void QtPillWindow::accessibilityLabelChanged() {
  setAccessibleName(QString::fromStdString(client_.accessibilityLabel()));
}

void QtPillWindow::setSharing(bool /*readable*/) {}

void QtPillWindow::orderFront() {
  show();
  raise();
}

void QtPillWindow::setScreenSeen(bool seen) {
  screenSeen_ = seen;
  updateSeen();
}

void QtPillWindow::updateSeen() {
  const bool onScreen = isVisible() && screenSeen_;
  x11_->lookForCover(onScreen && dot_.pulses());
  if (dot_.setSeen(onScreen && !x11_->isCovered())) update(dotArea_);
}

void QtPillWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  updateSeen();
}

void QtPillWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  updateSeen();
}

void QtPillWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  pictureIsOld_ = true;
  dotArea_ = dot_.area(bounds());
  drawPicture();
}

void QtPillWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) client_.click();
}

// As it grows or shrinks around its content, the window opens on another part of the frame that it
// moves to. Its edges are those of its pixels, which are whole where its points are not.
Rect QtPillWindow::bounds() const {
  const double scale = devicePixelRatioF();
  const QSizeF size = QSizeF((QSizeF(this->size()) * scale).toSize()) / scale;
  if (motion_.state() != QAbstractAnimation::Running) return {0, 0, size.width(), size.height()};
  const QPoint corner = geometry().topLeft() - target_.topLeft();
  return {static_cast<double>(corner.x()), target_.height() - corner.y() - size.height(),
          size.width(), size.height()};
}

void QtPillWindow::drawPicture() {
  const double scale = devicePixelRatioF();
  if (!pictureIsOld_ && picture_.devicePixelRatio() == scale) return;
  pictureIsOld_ = false;
  const Rect area = bounds();
  picture_ = QImage((QSizeF(area.width, area.height) * scale).toSize(),
                    QImage::Format_ARGB32_Premultiplied);
  picture_.setDevicePixelRatio(scale);
  picture_.fill(Qt::transparent);
  {
    QPainter painter(&picture_);
    QtCanvas canvas(painter, area, scale);
    client_.draw(canvas, area, scale);
  }
  cutToShape();
}

// Without a compositor nothing shines through a translucent corner: the window itself gets the
// pill's shape, and what is left of its edge is opaque.
void QtPillWindow::cutToShape() {
  if (x11_->isComposited()) {
    x11_->unshape();
    return;
  }
  x11_->shape(picture_);
  picture_.convertTo(QImage::Format_RGB32);
}

void QtPillWindow::paintEvent(QPaintEvent* event) {
  drawPicture();
  QPainter painter(this);
  painter.setClipRegion(event->region());
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(0, 0, picture_);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  dot_.paint(painter, bounds(), devicePixelRatioF());
  if (!std::exchange(wasPainted_, true)) firstPainted.notify();
}

}  // namespace kestrow::qt
