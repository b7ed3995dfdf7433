#include "Kestrow/Qt/WrappedText.hpp"

#include <QFontMetricsF>
#include <QTextLayout>
#include <QTextOption>

#include <cmath>

namespace kestrow::qt {

QString plainText(const std::string& utf8) {
  QString text = QString::fromStdString(utf8);
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  return text.replace(u'\n', QChar(QChar::LineSeparator));
}

namespace wrapped_text {

namespace {

// Lays the lines out one under the other; gives their height.
double arrange(QTextLayout& layout, int width) {
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  double y = 0;
  layout.beginLayout();
  for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    line.setPosition({0, y});
    y += line.height();
  }
  layout.endLayout();
  return y;
}

}  // namespace

int height(const QString& text, const QFont& font, int width) {
  QTextLayout layout(text, font);
  return static_cast<int>(std::ceil(arrange(layout, width)));
}

void draw(QPainter& painter, const QString& text, const QFont& font, QPointF topLeft, int width) {
  QTextLayout layout(text, font);
  arrange(layout, width);
  layout.draw(&painter, topLeft);
}

}  // namespace wrapped_text
}  // namespace kestrow::qt
