// Lines of text as Qt lays them out: the interface's font, kerning, digits of equal width, and the
// light behind the text.
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QString>

#include <optional>
#include <vector>

#include "Kestrow/Platform/Canvas.hpp"

namespace kestrow::qt {

QColor toQt(const Color& color);

// Inter where it is installed, else the desktop's interface font. Sizes are logical pixels. Not
// hinted and not coloured at its edges, so that it measures alike at every scale and lies well on a
// translucent window.
QFont interfaceFont(const Font& font);

// One line, laid out. Its box is as high as the first run's font and has the capitals in its
// middle, so that texts of several sizes and scripts sit well beside each other.
class TextLine {
 public:
  explicit TextLine(const AttributedText& text);

  Size size() const { return {width_, height_}; }
  double baseline() const { return baseline_; }  // from the top of the box

  // Draws it with the left end of its base line there, `scale` pixels for a point.
  void draw(QPainter& painter, QPointF baseline, double scale) const;

 private:
  // Text of one font that is drawn in one go.
  struct Piece {
    QString text;
    QFont font;
    QColor color;
    std::optional<Glow> glow;
    double x = 0;
  };

  void append(const TextRun& run);
  // Advances by the text's own width, or by `cell` with the text in its middle.
  void append(const QString& text, const QFont& font, const TextRun& run, double cell);
  void drawGlow(QPainter& painter, const Glow& glow, QPointF baseline, double scale) const;

  std::vector<Piece> pieces_;
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
