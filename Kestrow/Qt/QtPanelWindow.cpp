#include "Kestrow/Qt/QtPanelWindow.hpp"

#include "Kestrow/PanelKeys.hpp"
#include "Kestrow/PanelMeasure.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/QtCoordinates.hpp"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <algorithm>

namespace kestrow::qt {

namespace look = panel_look;

namespace {

constexpr int panelWidth = static_cast<int>(PanelMeasure::width);
constexpr int backgroundAlpha = 246;          // where a compositor lets the desktop shine through
constexpr std::uint32_t capsLock = 1U << 1U;  // X11's bit for it

QRectF primaryScreen() {
  const auto* screen = QGuiApplication::primaryScreen();
  return screen ? screen->geometry() : QRectF();
}

const char* slotName(EditAction action) {
  switch (action) {
    case EditAction::cut:
      return "cut()";
    case EditAction::copy:
      return "copy()";
    case EditAction::paste:
      return "paste()";
    case EditAction::selectAll:
      return "selectAll()";
    case EditAction::undo:
      return "undo()";
    case EditAction::redo:
      return "redo()";
  }
  return "";
}

KeyModifiers modifiersOf(const QKeyEvent& event) {
  const auto held = event.modifiers();
  return {.command = held.testFlag(Qt::ControlModifier),
          .shift = held.testFlag(Qt::ShiftModifier),
          .other = held.testFlag(Qt::AltModifier) || held.testFlag(Qt::MetaModifier) ||
                   (event.nativeModifiers() & capsLock) != 0};
}

}  // namespace

QtPanelWindow::QtPanelWindow(PanelSurfaceClient& client)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      client_(client),
      scroll_(this),
      column_(new PanelColumn(client, look::inset, nullptr)),
      bar_(*scroll_.verticalScrollBar(), this) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  setAccessibleName(QStringLiteral("Kestrow"));
  setWindowTitle(QStringLiteral("Kestrow"));
  setPalette(look::palette());
  setFocusPolicy(Qt::ClickFocus);  // holds the keyboard while no control does
  setFixedWidth(panelWidth);

  scroll_.setFrameShape(QFrame::NoFrame);
  scroll_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_.setFocusPolicy(Qt::NoFocus);
  scroll_.viewport()->setAutoFillBackground(false);
  scroll_.setWidget(column_);
  column_->setAutoFillBackground(false);
  scroll_.verticalScrollBar()->setSingleStep(20);
  bar_.raise();
  x11_ = std::make_unique<X11Window>(*this, [this] {
    applyShape();
    update();
  });
}

QtPanelWindow::~QtPanelWindow() = default;

void QtPanelWindow::setContent(const PanelNode& root) {
  const auto before = place();
  column_->apply(root);
  arrange();
  if (before) restore(*before);
  if (column_->takeStructureChanged()) fixTabOrder();
}

double QtPanelWindow::fittingHeight() {
  return column_->heightFor(look::contentWidth) + 2 * look::inset;
}

void QtPanelWindow::setFrame(const Rect& frame) {
  setGeometry(fromPoints(frame, primaryScreen()));
}

void QtPanelWindow::scrollToTop() {
  scroll_.verticalScrollBar()->setValue(0);
}

void QtPanelWindow::showAndMakeKey() {
  if (!isVisible()) setAttribute(Qt::WA_KeyboardFocusChange, false);
  show();
  raise();
  activateWindow();
  setFocus();
}

void QtPanelWindow::orderOut() {
  hide();
}

void QtPanelWindow::installMonitors() {
  watchesKeys_ = true;
  if (!outsideClicks_) {
    outsideClicks_ = new OutsideClicks([this] { client_.clickedOutside(); });
    outsideClicks_->setParent(this);
  }
}

void QtPanelWindow::removeMonitors() {
  watchesKeys_ = false;
  if (outsideClicks_) outsideClicks_->deleteLater();
  outsideClicks_.clear();
}

std::optional<QtPanelWindow::Place> QtPanelWindow::place() const {
  const int top = scroll_.verticalScrollBar()->value();
  if (top == 0) return std::nullopt;
  for (auto* item : column_->leaves()) {
    const int y = item->widget().mapTo(column_, QPoint(0, 0)).y();
    if (y + item->widget().height() <= top) continue;
    Place found{.item = item};
    if (const auto* log = qobject_cast<LogLines*>(&item->widget())) {
      if (log->lineCount() > 0) found.lineFromEnd = log->lineCount() - 1 - log->lineAt(top - y);
    }
    found.offset = top - topOf(found);
    return found;
  }
  return std::nullopt;
}

int QtPanelWindow::topOf(const Place& place) const {
  const auto& widget = place.item->widget();
  int y = widget.mapTo(column_, QPoint(0, 0)).y();
  if (const auto* log = qobject_cast<const LogLines*>(&widget); log && place.lineFromEnd >= 0) {
    y += log->lineRect(std::max(0, log->lineCount() - 1 - place.lineFromEnd)).top();
  }
  return y;
}

void QtPanelWindow::restore(const Place& place) {
  if (place.item->widget().isHidden()) return;  // it is on its way out
  scroll_.verticalScrollBar()->setValue(topOf(place) + place.offset);
}

void QtPanelWindow::arrange() {
  column_->resize(panelWidth, static_cast<int>(fittingHeight()));
  column_->arrange();
}

void QtPanelWindow::fixTabOrder() {
  QWidget* before = this;
  for (auto* item : column_->leaves()) {
    auto* target = item->focusTarget();
    if (!target) continue;
    setTabOrder(before, target);
    before = target;
  }
}

// Without a compositor nothing shines through a translucent corner: the window itself is round.
void QtPanelWindow::applyShape() {
  if (x11_->isComposited()) {
    clearMask();
    return;
  }
  QPainterPath shape;
  shape.addRoundedRect(rect(), look::cornerRadius, look::cornerRadius);
  setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

bool QtPanelWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::WindowDeactivate) client_.resignedKey();
  return handled;
}

// The window manager's way of closing it. Never refused: that would keep the program from ending.
void QtPanelWindow::closeEvent(QCloseEvent* event) {
  if (isVisible()) client_.resignedKey();
  QWidget::closeEvent(event);
}

void QtPanelWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && watchesKeys_ && client_.escapePressed()) return;
  if (performKeyEquivalent(*event) || scrollByKey(event->key())) return;
  QWidget::keyPressEvent(event);
}

bool QtPanelWindow::performKeyEquivalent(const QKeyEvent& event) {
  const auto action =
      keyEquivalent(modifiersOf(event), QKeySequence(event.key()).toString().toStdString());
  if (!action) return false;
  for (QObject* responder = focusWidget(); responder; responder = responder->parent()) {
    const auto method = responder->metaObject()->indexOfMethod(slotName(*action));
    if (method >= 0) return responder->metaObject()->method(method).invoke(responder);
  }
  return false;
}

bool QtPanelWindow::scrollByKey(int key) {
  auto* const bar = scroll_.verticalScrollBar();
  switch (key) {
    case Qt::Key_PageUp:
      bar->triggerAction(QAbstractSlider::SliderPageStepSub);
      return true;
    case Qt::Key_PageDown:
      bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
      return true;
    case Qt::Key_Home:
      bar->triggerAction(QAbstractSlider::SliderToMinimum);
      return true;
    case Qt::Key_End:
      bar->triggerAction(QAbstractSlider::SliderToMaximum);
      return true;
    case Qt::Key_Up:
      bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
      return true;
    case Qt::Key_Down:
      bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
      return true;
    default:
      return false;
  }
}

bool QtPanelWindow::focusNextPrevChild(bool next) {
  const bool moved = QWidget::focusNextPrevChild(next);
  auto* const focus = focusWidget();
  if (moved && focus && column_->isAncestorOf(focus)) scroll_.ensureWidgetVisible(focus, 0, 12);
  return moved;
}

void QtPanelWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  scroll_.setGeometry(rect());
  bar_.setGeometry(width() - PanelScrollBar::thickness, look::cornerRadius - 4,
                   PanelScrollBar::thickness, height() - 2 * (look::cornerRadius - 4));
  applyShape();
}

void QtPanelWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  QColor fill = look::background;
  if (x11_->isComposited()) {
    painter.fillRect(rect(), Qt::transparent);
    fill.setAlpha(backgroundAlpha);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  if (x11_->isComposited()) {
    painter.drawRoundedRect(rect(), look::cornerRadius, look::cornerRadius);
  } else {
    painter.drawRect(rect());
  }
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.setPen(QPen(look::line, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), look::cornerRadius - 0.5,
                          look::cornerRadius - 0.5);
}

}  // namespace kestrow::qt
