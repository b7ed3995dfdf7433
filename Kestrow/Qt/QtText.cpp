#include "Kestrow/Qt/QtText.hpp"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QList>
#include <QString>
#include <QTextCharFormat>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kestrow::qt {

namespace {

constexpr auto preferredFamily = "Inter";
constexpr double lengthSteps = 64;  // in a point: Qt's layouts are no finer

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

double widestDigit(const QFontMetricsF& metrics) {
  double widest = 0;
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
    widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
  }
  return widest;
}

// One UTF-16 unit of a line.
struct Character {
  const TextAttributes* attributes = nullptr;
  // A digit in a cell that is as wide as the widest one, and what it leaves free of it.
  bool isInCell = false;
  double before = 0;
  double after = 0;
};

void append(std::vector<Character>& characters, const QString& text,
            const TextAttributes& attributes) {
  const QFontMetricsF metrics(interfaceFont(attributes.font));
  const double cell = attributes.font.monospacedDigits ? widestDigit(metrics) : 0;
  for (const QChar c : text) {
    const bool isInCell = cell > 0 && isDigit(c);
    const double slack = isInCell ? cell - metrics.horizontalAdvance(c) : 0;
    const double before = std::floor(slack * 0.5 * lengthSteps) / lengthSteps;
    characters.push_back({&attributes, isInCell, before, slack - before});
  }
}

// What is drawn in one go, with equal room after each character: the kerning, and beside a digit in
// a cell a part of what that leaves free. Such a digit is drawn alone, or the font would raise some
// of the colons between digits and others not.
QList<QTextLayout::FormatRange> formats(const std::vector<Character>& characters) {
  const auto roomAfter = [&](std::size_t at) {
    const double next = at + 1 < characters.size() ? characters[at + 1].before : 0;
    return characters[at].attributes->kerning + characters[at].after + next;
  };
  const auto goOn = [&](std::size_t at) {
    const Character& before = characters[at - 1];
    const Character& next = characters[at];
    return !before.isInCell && !next.isInCell && before.attributes == next.attributes &&
           roomAfter(at - 1) == roomAfter(at);
  };
  QList<QTextLayout::FormatRange> ranges;
  for (std::size_t start = 0, end = 0; start < characters.size(); start = end) {
    for (++end; end < characters.size() && goOn(end);) ++end;
    const auto* attributes = characters[start].attributes;
    QFont font = interfaceFont(attributes->font);
    font.setLetterSpacing(QFont::AbsoluteSpacing, roomAfter(start));
    QTextLayout::FormatRange range{static_cast<int>(start), static_cast<int>(end - start), {}};
    range.format.setFont(font);
    range.format.setForeground(toQt(attributes->color));
    ranges.append(range);
  }
  return ranges;
}

// As one line, its left end at 0, whichever way it runs.
void layOut(QTextLayout& layout) {
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setTextDirection(Qt::LayoutDirectionAuto);
  option.setWrapMode(QTextOption::NoWrap);
  option.setFlags(QTextOption::IncludeTrailingSpaces);
  layout.setTextOption(option);
  layout.setCacheEnabled(true);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
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

// Blurs along rows of `width` and gives the result turned on its side: rows are columns. A weight
// is applied to a whole row at once, which a processor does for many pixels at a time.
std::vector<float> blurRows(const std::vector<float>& values, int width, int height,
                            const std::vector<float>& weights) {
  std::vector<float> turned(values.size());
  std::vector<float> sums(static_cast<std::size_t>(width));
  const int reach = static_cast<int>(weights.size()) - 1;
  for (int y = 0; y < height; ++y) {
    std::ranges::fill(sums, 0.F);
    const float* row = values.data() + place(0, y, width);
    for (int shift = -reach; shift <= reach; ++shift) {
      const float weight = weights[static_cast<std::size_t>(std::abs(shift))];
      const int end = std::min(width - shift, width);
      for (int x = std::max(-shift, 0); x < end; ++x) {
        sums[static_cast<std::size_t>(x)] += weight * row[x + shift];
      }
    }
    for (int x = 0; x < width; ++x) {
      turned[place(y, x, height)] = sums[static_cast<std::size_t>(x)];
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
  QString whole;
  std::vector<Character> characters;
  for (const auto& run : text) {
    const QString part = QString::fromStdString(run.text);
    if (run.attributes.glow) lit_.push_back({whole.size(), part.size(), *run.attributes.glow});
    whole += part;
    append(characters, part, run.attributes);
  }
  const QFont font = interfaceFont(text.front().attributes.font);
  layout_.setText(whole);
  layout_.setFont(font);
  layout_.setFormats(formats(characters));
  layOut(layout_);
  inset_ = characters.empty() ? 0 : characters.front().before;
  width_ = inset_ + layout_.lineAt(0).horizontalAdvance();

  const QFontMetricsF metrics(font);
  height_ = metrics.ascent() + metrics.descent();
  baseline_ = (height_ + metrics.capHeight()) * 0.5;
}

void TextLine::draw(QPainter& painter, QPointF baseline, double scale) const {
  if (layout_.lineCount() == 0) return;
  for (const auto& lit : lit_) drawGlow(painter, lit, baseline, scale);
  drawLayout(painter, layout_, baseline);
}

void TextLine::drawLayout(QPainter& painter, const QTextLayout& layout, QPointF baseline) const {
  layout.draw(&painter, baseline + QPointF(inset_, -layout.lineAt(0).ascent()));
}

void TextLine::drawGlow(QPainter& painter, const Lit& lit, QPointF baseline, double scale) const {
  // A blur of this radius spreads as a Gaussian of half of it does.
  const double deviation = lit.glow.radius * 0.5;
  const double margin = std::ceil(deviation * 3);
  QImage picture(QSizeF((width_ + 2 * margin) * scale, (height_ + 2 * margin) * scale).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QTextLayout source(layout_.text(), layout_.font());
  auto formats = layout_.formats();
  for (auto& range : formats) {
    const bool shines = range.start >= lit.start && range.start < lit.start + lit.length;
    range.format.setForeground(shines ? Qt::white : Qt::transparent);
  }
  source.setFormats(formats);
  layOut(source);
  {
    QPainter into(&picture);
    drawLayout(into, source, {margin, margin + baseline_});
  }
  painter.drawImage(baseline - QPointF(margin, margin + baseline_),
                    blurred(picture, deviation * scale, toQt(lit.glow.color)));
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
