#include "Kestrow/Qt/PanelRows.hpp"

#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/WrappedText.hpp"

#include <QAbstractButton>
#include <QFontMetrics>

#include <utility>
#include <variant>

namespace kestrow::qt {

namespace look = panel_look;

namespace {

const QMargins rowOutset{look::rowOutsetX, look::rowOutsetY, look::rowOutsetX, look::rowOutsetY};

constexpr int statusGap = static_cast<int>(PanelMeasure::rowSpacing);
constexpr int detailGap = 1;

QFontMetrics titleMetrics() {
  return QFontMetrics(look::font(look::regularSize));
}

// Where the mark goes: beside the title.
QRectF markRect(const QRect& content) {
  const double y = content.top() + (titleMetrics().height() - look::indicator) / 2.0;
  return {static_cast<double>(content.left()), y, look::indicator, look::indicator};
}

// Assistive technology is told of each setting, so only what changed is set.
void describe(QWidget& row, const QString& name, const QString& description) {
  if (name != row.accessibleName()) row.setAccessibleName(name);
  if (description != row.accessibleDescription()) row.setAccessibleDescription(description);
}

// A user may turn a radio button on only; the program may also turn it off.
void sync(QAbstractButton& button, bool isOn) {
  if (button.isChecked() == isOn) return;
  const bool exclusive = button.autoExclusive();
  button.setAutoExclusive(false);
  button.setChecked(isOn);
  button.setAutoExclusive(exclusive);
}

}  // namespace

int RowText::heightFor(int width) const {
  const int titleHeight = titleMetrics().height();
  if (detail.isEmpty()) return titleHeight;
  return titleHeight + detailGap +
         wrapped_text::height(detail, look::font(look::smallSize), width - look::titleIndent);
}

void RowText::draw(QPainter& painter, const QRect& content, bool isEnabled) const {
  const QFont titleFont = look::font(look::regularSize);
  const QFont smallFont = look::font(look::smallSize);
  const QFontMetrics metrics(titleFont);
  constexpr int flags = Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine;
  QRect line = content.adjusted(look::titleIndent, 0, 0, 0);
  line.setHeight(metrics.height());

  const QString shown = metrics.elidedText(title, Qt::ElideRight, line.width());
  QColor color = look::primaryText;
  if (!isEnabled) color.setAlphaF(look::disabledOpacity);
  painter.setFont(titleFont);
  painter.setPen(color);
  painter.drawText(line, flags, shown);

  painter.setPen(look::secondaryText);
  wrapped_text::draw(painter, detail, smallFont,
                     QPointF(line.left(), line.top() + line.height() + detailGap), line.width());
  line.setLeft(line.left() + metrics.horizontalAdvance(shown) + statusGap);
  painter.setFont(smallFont);
  painter.drawText(line, flags,
                   QFontMetrics(smallFont).elidedText(status, Qt::ElideRight, line.width()));
}

template <class Button>
MarkRow<Button>::MarkRow(DrawMark drawMark, QWidget* parent) : Button(parent), drawMark_(drawMark) {
  this->setAttribute(Qt::WA_Hover);
}

template <class Button>
void MarkRow<Button>::showTexts(RowText text, const QString& description, bool isOn) {
  if (text != text_) {
    text_ = std::move(text);
    heightWidth_ = -1;
    this->update();
  }
  describe(*this, text_.title, description);
  sync(*this, isOn);
}

template <class Button>
int MarkRow<Button>::heightFor(int width) {
  if (heightWidth_ != width) {
    height_ = text_.heightFor(width);
    heightWidth_ = width;
  }
  return height_;
}

template <class Button>
QMargins MarkRow<Button>::outset() const {
  return rowOutset;
}

template <class Button>
void MarkRow<Button>::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool hovered = this->isEnabled() && this->underMouse();
  if (hovered) look::drawRow(painter, this->rect());
  const QRect content = this->rect().marginsRemoved(rowOutset);
  if (!this->isEnabled()) painter.setOpacity(look::disabledOpacity);
  drawMark_(painter, markRect(content), this->isChecked(), hovered);
  painter.setOpacity(1);
  text_.draw(painter, content, this->isEnabled());
  if (look::showsFocus(*this)) look::drawFocusRing(painter, this->rect());
}

RadioRow::RadioRow(PanelSurfaceClient& client, QWidget* parent)
    : MarkRow(look::drawRadioMark, parent) {
  connect(this, &QAbstractButton::clicked, this, [this, &client] {
    const auto id = id_;  // the answer may change this row
    client.radioButtonPicked(id);
  });
}

void RadioRow::apply(const PanelNode& node) {
  const auto& radio = std::get<PanelRadioButton>(node.kind);
  id_ = node.id;
  showTexts({.title = QString::fromStdString(radio.title),
             .status = {},
             .detail = QString::fromStdString(radio.detail)},
            QString::fromStdString(radio.help()), radio.isOn);
}

// An arrow key picks what it goes to; Qt leaves that out while none of the group is on.
void RadioRow::keyPressEvent(QKeyEvent* event) {
  MarkRow::keyPressEvent(event);
  auto* const next = qobject_cast<RadioRow*>(window()->focusWidget());
  if (next && next != this && !next->isChecked()) next->click();
}

CheckRow::CheckRow(PanelSurfaceClient& client, QWidget* parent)
    : MarkRow(look::drawCheckMark, parent) {
  connect(this, &QAbstractButton::clicked, this, [this, &client](bool isOn) {
    const auto id = id_;  // the answer may change this row
    client.checkBoxToggled(id, isOn);
  });
}

void CheckRow::apply(const PanelNode& node) {
  const auto& box = std::get<PanelCheckBox>(node.kind);
  id_ = node.id;
  const RowText text{.title = QString::fromStdString(box.title),
                     .status = QString::fromStdString(box.status),
                     .detail = QString::fromStdString(box.detail)};
  setEnabled(box.isEnabled);
  showTexts(text, QString::fromStdString(box.help()), box.isOn);
}

}  // namespace kestrow::qt
