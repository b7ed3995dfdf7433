#include "Kestrow/Qt/QtPillWindow.hpp"

#include <QBitmap>
#include <QEasingCurve>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

#include <chrono>
#include <cmath>

#include "Kestrow/Qt/QtCanvas.hpp"
#include "Kestrow/Qt/QtCoordinates.hpp"

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
      dot_([this] { update(dotArea_); }) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(QString::fromStdString(client.accessibilityLabel()));
  motion_.setEasingCurve(QEasingCurve::InOutSine);
  connect(&motion_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setGeometry(value.toRect()); });
  x11_ = std::make_unique<X11Window>(*this, [this] {
    applyShape();
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
  if (target == target_ && motion_.state() == QAbstractAnimation::Running) return;
  target_ = target;
  motion_.stop();
  if (duration <= Seconds::zero() || !isVisible()) {
    setGeometry(target_);
    return;
  }
  motion_.setStartValue(geometry());
  motion_.setEndValue(target_);
  motion_.setDuration(
      static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count()));
  motion_.start();
}

void QtPillWindow::setDot(const std::optional<DotAppearance>& dot) {
  update(dotArea_);
  dot_.show(dot);
  dotArea_ = dot_.area(height());
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
  dot_.setSeen(onScreen && !x11_->isCovered());
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
  dotArea_ = dot_.area(height());
  applyShape();
}

void QtPillWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) client_.click();
}

void QtPillWindow::drawPicture() {
  const double scale = devicePixelRatioF();
  if (!pictureIsOld_ && picture_.devicePixelRatio() == scale) return;
  pictureIsOld_ = false;
  const QSize pixels(static_cast<int>(std::ceil(width() * scale)),
                     static_cast<int>(std::ceil(height() * scale)));
  picture_ = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
  picture_.setDevicePixelRatio(scale);
  picture_.fill(Qt::transparent);
  QPainter painter(&picture_);
  const Rect bounds{0, 0, static_cast<double>(width()), static_cast<double>(height())};
  QtCanvas canvas(painter, bounds, scale);
  client_.draw(canvas, bounds, scale);
}

// Without a compositor nothing shines through a translucent corner: the window itself gets the
// pill's shape.
void QtPillWindow::applyShape() {
  if (x11_->isComposited()) {
    clearMask();
    return;
  }
  drawPicture();
  const QImage points = picture_.scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  setMask(QBitmap::fromImage(points.createAlphaMask()));
}

void QtPillWindow::paintEvent(QPaintEvent* event) {
  drawPicture();
  QPainter painter(this);
  painter.setClipRegion(event->region());
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(0, 0, picture_);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  dot_.paint(painter, height(), devicePixelRatioF());
}

}  // namespace kestrow::qt
