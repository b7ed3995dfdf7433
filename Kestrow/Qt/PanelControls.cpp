#include "Kestrow/Qt/PanelControls.hpp"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <utility>
#include <variant>

#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/WrappedText.hpp"

namespace kestrow::qt {

namespace look = panel_look;

namespace {

const QMargins rowOutset{look::rowOutsetX, look::rowOutsetY, look::rowOutsetX, look::rowOutsetY};

constexpr int statusGap = 8;
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

void prepare(QAbstractButton& button, const QFont& font) {
  button.setFont(font);
  button.setAttribute(Qt::WA_Hover);
}

}  // namespace

WrapLabel::WrapLabel(const QFont& font, const QColor& color, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFont(font);
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, color);
  setPalette(colors);
}

void WrapLabel::apply(const PanelNode& node) {
  showText(std::get<PanelLabel>(node.kind).text);
}

void WrapLabel::showText(const std::string& text) {
  const QString shown = plainText(text);
  if (shown == this->text()) return;
  setText(shown);
  heightWidth_ = -1;
}

int WrapLabel::heightFor(int width) {
  if (heightWidth_ != width) {
    height_ = wrapped_text::height(text(), font(), width);
    heightWidth_ = width;
  }
  return height_;
}

void WrapLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  wrapped_text::draw(painter, text(), font(), {0, 0}, width());
}

void HeadingLabel::apply(const PanelNode& node) {
  const auto* header = std::get_if<PanelHeader>(&node.kind);
  showText(header ? header->text : std::get<PanelSectionTitle>(node.kind).text);
}

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

RadioRow::RadioRow(PanelSurfaceClient& client, QWidget* parent) : QRadioButton(parent) {
  prepare(*this, look::font(look::regularSize));
  connect(this, &QAbstractButton::clicked, this, [this, &client] {
    const auto id = id_;  // the answer may change this row
    client.radioButtonPicked(id);
  });
}

void RadioRow::apply(const PanelNode& node) {
  const auto& radio = std::get<PanelRadioButton>(node.kind);
  id_ = node.id;
  RowText text{.title = oneLine(radio.title), .status = {}, .detail = plainText(radio.detail)};
  if (text != text_) {
    text_ = std::move(text);
    heightWidth_ = -1;
    describe(*this, text_.title, text_.detail);
    update();
  }
  sync(*this, radio.isOn);
}

int RadioRow::heightFor(int width) {
  if (heightWidth_ != width) {
    height_ = text_.heightFor(width);
    heightWidth_ = width;
  }
  return height_;
}

QMargins RadioRow::outset() const {
  return rowOutset;
}

void RadioRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (underMouse()) look::drawRow(painter, rect());
  const QRect content = rect().marginsRemoved(rowOutset);
  look::drawRadioMark(painter, markRect(content), isChecked(), underMouse());
  text_.draw(painter, content, true);
  if (look::showsFocus(*this)) look::drawFocusRing(painter, rect());
}

CheckRow::CheckRow(PanelSurfaceClient& client, QWidget* parent) : QCheckBox(parent) {
  prepare(*this, look::font(look::regularSize));
  connect(this, &QAbstractButton::clicked, this, [this, &client](bool isOn) {
    const auto id = id_;  // the answer may change this row
    client.checkBoxToggled(id, isOn);
  });
}

void CheckRow::apply(const PanelNode& node) {
  const auto& box = std::get<PanelCheckBox>(node.kind);
  id_ = node.id;
  RowText text{
      .title = oneLine(box.title), .status = oneLine(box.status), .detail = plainText(box.detail)};
  if (text != text_) {
    text_ = std::move(text);
    describe(*this, text_.title, text_.status.isEmpty() ? text_.detail : text_.status);
    update();
  }
  setEnabled(box.isEnabled);
  sync(*this, box.isOn);
}

int CheckRow::heightFor(int width) {
  return text_.heightFor(width);
}

QMargins CheckRow::outset() const {
  return rowOutset;
}

void CheckRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool hovered = isEnabled() && underMouse();
  if (hovered) look::drawRow(painter, rect());
  const QRect content = rect().marginsRemoved(rowOutset);
  if (!isEnabled()) painter.setOpacity(look::disabledOpacity);
  look::drawCheckMark(painter, markRect(content), isChecked(), hovered);
  painter.setOpacity(1);
  text_.draw(painter, content, isEnabled());
  if (look::showsFocus(*this)) look::drawFocusRing(painter, rect());
}

PushButton::PushButton(PanelSurfaceClient& client, QWidget* parent) : QPushButton(parent) {
  prepare(*this, look::font(look::regularSize, FontWeight::medium));
  setAutoDefault(true);  // Return presses it too
  connect(this, &QAbstractButton::clicked, this, [this, &client] {
    const auto id = id_;  // the answer may take this button away
    client.buttonPressed(id);
  });
}

void PushButton::apply(const PanelNode& node) {
  id_ = node.id;
  const QString title = oneLine(std::get<PanelButton>(node.kind).title);
  if (title == text()) return;
  setText(title);
  setAccessibleName(title);
}

int PushButton::heightFor(int /*width*/) {
  return look::controlHeight;
}

int PushButton::widthFor(int available) {
  return std::min(available, fontMetrics().horizontalAdvance(text()) + 28);
}

void PushButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  look::drawControl(painter, rect(), underMouse(), isDown());
  painter.setPen(look::primaryText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
  if (look::showsFocus(*this)) look::drawFocusRing(painter, rect());
}

void SeparatorLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), look::line);
}

}  // namespace kestrow::qt
