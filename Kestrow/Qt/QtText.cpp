#include "Kestrow/Qt/QtText.hpp"

#include <QFontDatabase>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kestrow::qt {

namespace {

constexpr auto preferredFamily = "Inter";

QFont::Weight weight(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return QFont::Normal;
    case FontWeight::medium:
      return QFont::Medium;
    case FontWeight::semibold:
      return QFont::DemiBold;
    case FontWeight::bold:
      return QFont::Bold;
    case FontWeight::heavy:
      return QFont::ExtraBold;
  }
  return QFont::Normal;
}

bool isDigit(QChar c) {
  return c >= u'0' && c <= u'9';
}

double widestDigit(const QFont& font) {
  const QFontMetricsF metrics(font);
  double widest = 0;
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
    widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
  }
  return widest;
}

// The weights of a Gaussian's one side, its middle first; all of them together with the mirrored
// side make 1.
std::vector<float> gaussian(double deviation) {
  const auto reach = static_cast<std::size_t>(std::ceil(deviation * 3));
  std::vector<float> weights;
  for (std::size_t i = 0; i <= reach; ++i) {
    const double distance = static_cast<double>(i) / deviation;
    weights.push_back(static_cast<float>(std::exp(-0.5 * distance * distance)));
  }
  const float sum = 2 * std::accumulate(weights.begin(), weights.end(), 0.F) - weights.front();
  for (auto& one : weights) one /= sum;
  return weights;
}

std::size_t place(int column, int row, int width) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
         static_cast<std::size_t>(column);
}

// Blurs along rows of `width` and gives the result turned on its side: rows are columns.
std::vector<float> blurRows(const std::vector<float>& values, int width, int height,
                            const std::vector<float>& weights) {
  std::vector<float> turned(values.size());
  const int reach = static_cast<int>(weights.size()) - 1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      float sum = 0;
      for (int at = std::max(x - reach, 0); at <= std::min(x + reach, width - 1); ++at) {
        sum += values[place(at, y, width)] * weights[static_cast<std::size_t>(std::abs(at - x))];
      }
      turned[place(y, x, height)] = sum;
    }
  }
  return turned;
}

}  // namespace

QColor toQt(const Color& color) {
  const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(part(color.rgb.red), part(color.rgb.green), part(color.rgb.blue),
                          part(color.alpha));
}

QFont interfaceFont(const Font& font) {
  QFont result = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  QStringList families = result.families();
  families.prepend(QString::fromLatin1(preferredFamily));
  result.setFamilies(families);
  result.setPixelSize(std::max(static_cast<int>(std::lround(font.size)), 1));
  result.setWeight(weight(font.weight));
  result.setHintingPreference(QFont::PreferNoHinting);
  result.setStyleStrategy(QFont::NoSubpixelAntialias);
  return result;
}

TextLine::TextLine(const AttributedText& text) {
  if (text.empty()) return;
  const QFontMetricsF metrics(interfaceFont(text.front().attributes.font));
  height_ = metrics.ascent() + metrics.descent();
  baseline_ = (height_ + metrics.capHeight()) * 0.5;
  for (const auto& run : text) append(run);
}

void TextLine::append(const TextRun& run) {
  QFont font = interfaceFont(run.attributes.font);
  font.setLetterSpacing(QFont::AbsoluteSpacing, run.attributes.kerning);
  const QString text = QString::fromStdString(run.text);
  // Text that runs from right to left keeps its own order of digits: it is laid out as a whole.
  if (!run.attributes.font.monospacedDigits || text.isRightToLeft()) {
    append(text, font, run, 0);
    return;
  }
  const double cell = widestDigit(font);
  for (qsizetype at = 0; at < text.size();) {
    if (isDigit(text[at])) {
      append(text.mid(at, 1), font, run, cell);
      ++at;
      continue;
    }
    const auto end = std::find_if(text.begin() + at, text.end(), isDigit) - text.begin();
    append(text.mid(at, end - at), font, run, 0);
    at = end;
  }
}

void TextLine::append(const QString& text, const QFont& font, const TextRun& run, double cell) {
  const double advance = QFontMetricsF(font).horizontalAdvance(text);
  const double inset = cell > 0 ? (cell - advance) * 0.5 : 0;
  pieces_.push_back({text, font, toQt(run.attributes.color), run.attributes.glow, width_ + inset});
  width_ += cell > 0 ? cell : advance;
}

void TextLine::draw(QPainter& painter, QPointF baseline, double scale) const {
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const auto& glow = pieces_[i].glow;
    if (glow && (i == 0 || pieces_[i - 1].glow != glow)) drawGlow(painter, *glow, baseline, scale);
  }
  for (const auto& piece : pieces_) {
    painter.setFont(piece.font);
    painter.setPen(piece.color);
    painter.drawText(baseline + QPointF(piece.x, 0), piece.text);
  }
}

// The light of all pieces that have it, in one: it adds up between letters as it would around one
// shape.
void TextLine::drawGlow(QPainter& painter, const Glow& glow, QPointF baseline, double scale) const {
  // A blur of this radius spreads as a Gaussian of half of it does.
  const double deviation = glow.radius * 0.5;
  const double margin = std::ceil(deviation * 3);
  QImage picture(QSizeF((width_ + 2 * margin) * scale, (height_ + 2 * margin) * scale).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  {
    QPainter into(&picture);
    into.setPen(Qt::white);
    for (const auto& piece : pieces_) {
      if (piece.glow != glow) continue;
      into.setFont(piece.font);
      into.drawText(QPointF(margin + piece.x, margin + baseline_), piece.text);
    }
  }
  painter.drawImage(baseline - QPointF(margin, margin + baseline_),
                    blurred(picture, deviation * scale, toQt(glow.color)));
}

QImage blurred(const QImage& picture, double deviation, const QColor& color) {
  const int width = picture.width();
  const int height = picture.height();
  const QImage source = picture.convertToFormat(QImage::Format_Alpha8);
  std::vector<float> alpha;
  alpha.reserve(place(0, height, width));
  for (int y = 0; y < height; ++y) {
    const uchar* line = source.constScanLine(y);
    alpha.insert(alpha.end(), line, line + width);
  }
  const auto weights = gaussian(deviation);
  alpha = blurRows(blurRows(alpha, width, height, weights), height, width, weights);

  QImage result(width, height, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < height; ++y) {
    auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
    for (int x = 0; x < width; ++x) {
      const float value = alpha[place(x, y, width)] * color.alphaF();
      line[x] = qPremultiply(
          qRgba(color.red(), color.green(), color.blue(), static_cast<int>(std::lround(value))));
    }
  }
  result.setDevicePixelRatio(picture.devicePixelRatio());
  return result;
}

}  // namespace kestrow::qt
