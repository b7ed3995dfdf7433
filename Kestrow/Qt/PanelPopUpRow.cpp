#include "Kestrow/Qt/PanelPopUpRow.hpp"

#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/PanelScrollBar.hpp"
#include "Kestrow/Qt/WrappedText.hpp"
#include "Kestrow/Qt/X11Window.hpp"

#include <QAccessible>
#include <QListView>
#include <QPainter>
#include <QProxyStyle>
#include <QStringList>
#include <QStyleFactory>
#include <QWheelEvent>

#include <algorithm>
#include <variant>

namespace kestrow::qt {

namespace look = panel_look;

namespace {

constexpr int labelColumn = 84;  // so that buttons under each other line up
constexpr int gap = static_cast<int>(PanelMeasure::rowSpacing);
constexpr int choiceHeight = 26;
constexpr int mostChoices = 14;  // shown at once

constexpr int listPadding = 4;

// A list under the button, without the frame that a style would draw.
class PopUpStyle final : public QProxyStyle {
 public:
  PopUpStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("fusion"))) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_ComboBox_Popup) return 0;
    if (hint == SH_ComboBox_PopupFrameStyle) return QFrame::NoFrame;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }
};

// The choices on a sheet with the button's corners; where no compositor lets the desktop show
// beside them, with square ones.
class ChoiceList final : public QListView {
 public:
  ChoiceList() : bar_(*verticalScrollBar(), this) {
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setViewportMargins(0, listPadding, 0, listPadding);
    viewport()->setAutoFillBackground(false);
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::Paint) drawSheet();
    return QListView::event(event);
  }
  void resizeEvent(QResizeEvent* event) override {
    QListView::resizeEvent(event);
    bar_.setGeometry(width() - PanelScrollBar::thickness, listPadding, PanelScrollBar::thickness,
                     height() - 2 * listPadding);
    bar_.raise();
  }

 private:
  void drawSheet() {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(look::line, 1));
    painter.setBrush(look::popUpBackground);
    if (isDesktopComposited()) {
      const QRectF sheet = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
      painter.drawRoundedRect(sheet, look::controlRadius, look::controlRadius);
    } else {
      painter.fillRect(rect(), look::popUpBackground);
      painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    }
  }

  PanelScrollBar bar_;  // for a screen on which not all choices have room
};

}  // namespace

PopUpButton::PopUpButton(QWidget* parent) : QComboBox(parent) {
  auto* style = new PopUpStyle;
  style->setParent(this);
  setStyle(style);
  setFont(look::font(look::regularSize));
  setAttribute(Qt::WA_Hover);
  setMaxVisibleItems(mostChoices);
  setPalette(look::palette());

  auto* list = new ChoiceList;
  list->setPalette(look::palette());
  list->setFont(font());
  setView(list);
  list->window()->setAttribute(Qt::WA_TranslucentBackground);
  setItemDelegate(new PopUpDelegate(*this));
}

void PopUpButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  look::drawControl(painter, rect(), underMouse(), view()->isVisible());
  look::drawPopUpArrows(painter, QPointF(width() - 14, height() / 2.0));
  const QRect room = rect().adjusted(10, 0, -26, 0);
  painter.setPen(look::primaryText);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(currentText(), Qt::ElideRight, room.width()));
  if (look::showsFocus(*this)) look::drawFocusRing(painter, rect());
}

void PopUpButton::showPopup() {
  view()->setMinimumWidth(view()->sizeHintForColumn(0));
  QComboBox::showPopup();
  update();
}

void PopUpButton::hidePopup() {
  QComboBox::hidePopup();
  update();
}

void PopUpButton::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

void PopUpDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const bool highlighted = (option.state & QStyle::State_Selected) != 0;
  if (highlighted) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(look::accent);
    painter->drawRoundedRect(option.rect.adjusted(4, 1, -4, -1), 5, 5);
  }
  const QColor color = highlighted ? look::onAccent : look::primaryText;
  painter->setPen(color);
  painter->setFont(option.font);
  painter->drawText(option.rect.adjusted(28, 0, -8, 0),
                    Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                    index.data(Qt::DisplayRole).toString());
  if (index.row() == button_.currentIndex()) {
    const QPointF at(option.rect.left() + 12, option.rect.center().y() + 0.5);
    const QPointF tick[] = {at + QPointF(0, 0.5), at + QPointF(2.8, 3.3), at + QPointF(8, -3.3)};
    painter->setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(tick, 3);
  }
  painter->restore();
}

QSize PopUpDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const int text = option.fontMetrics.horizontalAdvance(index.data(Qt::DisplayRole).toString());
  return {text + 44, choiceHeight};
}

PopUpRow::PopUpRow(PanelSurfaceClient& client, QWidget* parent)
    : QWidget(parent), label_(new QLabel(this)), button_(new PopUpButton(this)) {
  label_->setTextFormat(Qt::PlainText);
  label_->setFont(look::font(look::smallSize));
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, look::secondaryText);
  label_->setPalette(colors);
  label_->setBuddy(button_);
  // What is chosen is the button's name for assistive technology, which Qt does not tell of.
  connect(button_, &QComboBox::currentIndexChanged, this, [this] {
    QAccessibleEvent renamed(button_, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&renamed);
  });
  connect(button_, &QComboBox::activated, this, [this, &client](int selected) {
    const auto id = id_;  // the answer may change this row
    client.popUpChanged(id, selected);
  });
}

void PopUpRow::apply(const PanelNode& node) {
  const auto& popUp = std::get<PanelPopUp>(node.kind);
  id_ = node.id;
  if (const QString label = QString::fromStdString(popUp.label); label != label_->text())
    label_->setText(label);
  QStringList items;
  for (const auto& item : popUp.items) items.append(QString::fromStdString(item));
  QStringList shown;
  for (int i = 0; i < button_->count(); ++i) shown.append(button_->itemText(i));
  if (items != shown) {
    button_->clear();
    button_->addItems(items);
  }
  if (button_->currentIndex() != popUp.selected) button_->setCurrentIndex(popUp.selected);
}

int PopUpRow::heightFor(int /*width*/) {
  return look::controlHeight;
}

void PopUpRow::resizeEvent(QResizeEvent* /*event*/) {
  const int labelWidth = label_->fontMetrics().horizontalAdvance(label_->text());
  const int x = std::max(labelColumn, labelWidth + gap);
  label_->setGeometry(0, 0, labelWidth + 1, height());
  button_->setGeometry(x, 0, std::max(0, width() - x), height());
}

}  // namespace kestrow::qt
