#include "Kestrow/Qt/PanelControls.hpp"

#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/WrappedText.hpp"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <variant>

namespace kestrow::qt {

namespace look = panel_look;

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

PushButton::PushButton(PanelSurfaceClient& client, QWidget* parent) : QPushButton(parent) {
  setFont(look::font(look::regularSize, FontWeight::medium));
  setAttribute(Qt::WA_Hover);
  setAutoDefault(true);  // Return presses it too
  connect(this, &QAbstractButton::clicked, this, [this, &client] {
    const auto id = id_;  // the answer may take this button away
    client.buttonPressed(id);
  });
}

void PushButton::apply(const PanelNode& node) {
  id_ = node.id;
  const QString title = QString::fromStdString(std::get<PanelButton>(node.kind).title);
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
