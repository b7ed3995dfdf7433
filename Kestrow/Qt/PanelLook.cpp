#include "Kestrow/Qt/PanelLook.hpp"

#include "Kestrow/Qt/QtText.hpp"

#include <QPainterPath>
#include <QPen>

namespace kestrow::qt::panel_look {

QFont font(int size, FontWeight weight) {
  return interfaceFont({.size = static_cast<double>(size), .weight = weight});
}

QPalette palette() {
  QPalette result;
  result.setColor(QPalette::Window, background);
  result.setColor(QPalette::WindowText, primaryText);
  result.setColor(QPalette::Base, popUpBackground);
  result.setColor(QPalette::Text, primaryText);
  result.setColor(QPalette::Button, popUpBackground);
  result.setColor(QPalette::ButtonText, primaryText);
  result.setColor(QPalette::Highlight, accent);
  result.setColor(QPalette::HighlightedText, onAccent);
  return result;
}

void drawControl(QPainter& painter, const QRectF& rect, bool hovered, bool pressed) {
  painter.setPen(QPen(line, 1));
  painter.setBrush(pressed ? controlPressed : hovered ? controlHovered : control);
  painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), controlRadius, controlRadius);
}

void drawRow(QPainter& painter, const QRect& rect) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(rowHovered);
  painter.drawRoundedRect(rect, controlRadius, controlRadius);
}

void drawFocusRing(QPainter& painter, const QRectF& rect) {
  painter.setPen(QPen(accent, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), controlRadius, controlRadius);
}

bool showsFocus(const QWidget& widget) {
  return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

namespace {

void drawMarkFrame(QPainter& painter, const QRectF& rect, double radius, bool isOn, bool hovered) {
  painter.setPen(isOn ? QPen(Qt::NoPen) : QPen(QColor(255, 255, 255, 90), 1));
  painter.setBrush(isOn ? (hovered ? accent.lighter(112) : accent)
                        : (hovered ? controlHovered : control));
  const double edge = isOn ? 0 : 0.5;
  painter.drawRoundedRect(rect.adjusted(edge, edge, -edge, -edge), radius, radius);
}

}  // namespace

void drawRadioMark(QPainter& painter, const QRectF& rect, bool isOn, bool hovered) {
  drawMarkFrame(painter, rect, rect.width() / 2, isOn, hovered);
  if (!isOn) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(onAccent);
  painter.drawEllipse(rect.center(), 2.75, 2.75);
}

void drawCheckMark(QPainter& painter, const QRectF& rect, bool isOn, bool hovered) {
  drawMarkFrame(painter, rect, 4, isOn, hovered);
  if (!isOn) return;
  QPainterPath tick;
  tick.moveTo(rect.left() + 3.4, rect.top() + 7.4);
  tick.lineTo(rect.left() + 6.0, rect.top() + 10.0);
  tick.lineTo(rect.left() + 10.6, rect.top() + 4.4);
  painter.setPen(QPen(onAccent, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(tick);
}

void drawPopUpArrows(QPainter& painter, QPointF centre) {
  painter.setPen(QPen(secondaryText, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  for (const double direction : {-1.0, 1.0}) {
    QPainterPath arrow;
    arrow.moveTo(centre + QPointF(-3, direction * 2.5));
    arrow.lineTo(centre + QPointF(0, direction * 5.5));
    arrow.lineTo(centre + QPointF(3, direction * 2.5));
    painter.drawPath(arrow);
  }
}

}  // namespace kestrow::qt::panel_look
