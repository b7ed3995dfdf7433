#include "Kestrow/Qt/PanelScrollBar.hpp"

#include <QPainter>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOptionSlider>

namespace kestrow::qt {

PanelScrollBar::PanelScrollBar(QScrollBar& followed, QWidget* parent)
    : QScrollBar(Qt::Vertical, parent) {
  auto* style = QStyleFactory::create(QStringLiteral("fusion"));
  style->setParent(this);
  setStyle(style);
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::NoFocus);
  const auto follow = [this, &followed] {
    setRange(followed.minimum(), followed.maximum());
    setPageStep(followed.pageStep());
    setSingleStep(followed.singleStep());
    setVisible(maximum() > minimum());
  };
  connect(&followed, &QScrollBar::rangeChanged, this, follow);
  connect(&followed, &QScrollBar::valueChanged, this, &QScrollBar::setValue);
  connect(this, &QScrollBar::valueChanged, &followed, &QScrollBar::setValue);
  follow();
}

void PanelScrollBar::paintEvent(QPaintEvent* /*event*/) {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect handle =
      style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
  const bool active = isSliderDown() || underMouse();
  const double width = active ? 7 : 5;
  const QRectF shape(this->width() - width - 2, handle.top(), width, handle.height());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 255, 255, active ? 120 : 70));
  painter.drawRoundedRect(shape, width / 2, width / 2);
}

}  // namespace kestrow::qt
