// Lines of text as Qt lays them out: the interface's font, kerning, digits of equal width, and the
// light behind the text.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QTextLayout>

#include <vector>

namespace kestrow::qt {

QColor toQt(const Color& color);

// Inter where it is installed, else the desktop's interface font. Sizes are logical pixels. Not
// hinted and not coloured at its edges, so that it measures alike at every scale and lies well on a
// translucent window.
QFont interfaceFont(const Font& font);

// One line, laid out as a whole: where its text begins from right to left, so do its runs. Its box
// is as high as the first run's font and has the capitals in its middle, so that texts of several
// sizes and scripts sit well beside each other.
class TextLine {
 public:
  explicit TextLine(const AttributedText& text);

  Size size() const { return {width_, height_}; }
  double baseline() const { return baseline_; }  // from the top of the box

  // Draws it with the left end of its base line there, `scale` pixels for a point.
  void draw(QPainter& painter, QPointF baseline, double scale) const;

 private:
  // A part of the line that shines.
  struct Lit {
    qsizetype start = 0;
    qsizetype length = 0;
    Glow glow;
  };

  void drawLayout(QPainter& painter, const QTextLayout& layout, QPointF baseline) const;
  void drawGlow(QPainter& painter, const Lit& lit, QPointF baseline, double scale) const;

  QTextLayout layout_;
  std::vector<Lit> lit_;
  double inset_ = 0;  // of the first digit in its cell
  double width_ = 0;
  double height_ = 0;
  double baseline_ = 0;
};

// Measures without a window.
class QtTextMeasurer final : public TextMeasurer {
 public:
  Size measure(const AttributedText& text) override { return TextLine(text).size(); }
};

// The picture's alpha, blurred by a Gaussian with this standard deviation in pixels, in one colour.
QImage blurred(const QImage& picture, double deviation, const QColor& color);

}  // namespace kestrow::qt
