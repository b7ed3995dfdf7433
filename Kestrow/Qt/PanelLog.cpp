#include "Kestrow/Qt/PanelLog.hpp"

#include "Kestrow/PanelReuse.hpp"
#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/WrappedText.hpp"

#include <QAccessible>
#include <QFontMetricsF>
#include <QHash>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <variant>

namespace kestrow::qt {

namespace look = panel_look;

namespace {

// Room for what kerning and shaping may add to the sum of a text's characters.
constexpr double spareWidth = 12;

// Tells short lines without laying them out, which takes too long for a thousand of them.
class LineWidths {
 public:
  explicit LineWidths(const QFont& font) : metrics_(font) {}

  bool fits(const QString& text, double width) {
    double sum = spareWidth;
    for (const QChar character : text) {
      // Other scripts join their characters.
      if (character.isSurrogate() || character.script() > QChar::Script_Latin) {
        return metrics_.horizontalAdvance(text) <= width - 1;
      }
      auto known = widths_.find(character);
      if (known == widths_.end()) {
        known = widths_.insert(character, metrics_.horizontalAdvance(character));
      }
      sum += *known;
    }
    return sum <= width || metrics_.horizontalAdvance(text) <= width - 1;
  }

 private:
  QFontMetricsF metrics_;
  QHash<QChar, double> widths_;
};

}  // namespace

LogLines::LogLines(QWidget* parent) : QWidget(parent), font_(look::font(look::regularSize)) {}

void LogLines::apply(const PanelNode& node) {
  const auto& log = std::get<PanelLines>(node.kind);
  if (const auto name = QString::fromStdString(log.name); name != accessibleName())
    setAccessibleName(name);
  spacing_ = log.spacing;
  if (log.lines == shown_) return;

  const auto kept = static_cast<std::ptrdiff_t>(keptLines(shown_, log.lines));
  std::vector<Line> lines;
  lines.reserve(log.lines.size());
  for (auto line = log.lines.begin(); line != log.lines.end() - kept; ++line) {
    lines.push_back({.text = QString::fromStdString(*line)});
  }
  std::move(lines_.end() - kept, lines_.end(), std::back_inserter(lines));
  lines_ = std::move(lines);
  shown_ = log.lines;
  isMeasured_ = false;
  update();
  QAccessibleEvent changed(this, QAccessible::ObjectReorder);
  QAccessible::updateAccessibility(&changed);
}

int LogLines::heightFor(int width) {
  measure(width);
  return height_;
}

void LogLines::measure(int width) {
  if (isMeasured_ && measuredWidth_ == width) return;
  LineWidths widths(font_);
  const int single = wrapped_text::height(QStringLiteral("x"), font_, width);
  double y = 0;
  for (auto& line : lines_) {
    if (line.height < 0 || measuredWidth_ != width) {
      const bool fits = widths.fits(line.text, width);
      line.height = fits ? single : wrapped_text::height(line.text, font_, width);
    }
    line.y = static_cast<int>(y);
    y += line.height + spacing_;
  }
  height_ = lines_.empty() ? 0 : static_cast<int>(std::ceil(y - spacing_));
  measuredWidth_ = width;
  isMeasured_ = true;
}

QRect LogLines::lineRect(int line) const {
  const auto& at = lines_[static_cast<std::size_t>(line)];
  return {0, at.y, width(), at.height};
}

int LogLines::lineAt(int y) const {
  const auto after = std::ranges::upper_bound(lines_, y, {}, &Line::y);
  return std::max(0, static_cast<int>(after - lines_.begin()) - 1);
}

void LogLines::paintEvent(QPaintEvent* event) {
  measure(width());
  QPainter painter(this);
  painter.setPen(look::primaryText);
  for (int i = lineAt(event->rect().top()); i < lineCount(); ++i) {
    const QRect rect = lineRect(i);
    if (rect.top() > event->rect().bottom()) break;
    wrapped_text::draw(painter, lineText(i), font_, rect.topLeft(), width());
  }
}

}  // namespace kestrow::qt
