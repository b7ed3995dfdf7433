#include "Kestrow/PillView.hpp"

#include "KestrowCore/Text.hpp"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <variant>

namespace kestrow {

namespace {

constexpr double capsuleRadius = 13;
constexpr double wingRadius = 9;
constexpr double stripHeight = 2;
constexpr double badgeHeight = 13;
constexpr double highlightHeight = 17;
constexpr double glowRadius = 4;
constexpr double scaleWithoutScreen = 2;

Color white(double alpha) {
  return {PillView::Palette::white, alpha};
}

// As the canvas wants it: on one line, and no longer than anyone could see.
std::string shown(std::string_view text) {
  return text::onOneLine(text::firstBytes(text, PillView::longestText));
}

Path roundedBadge(double x, double mid, double width, double height, double radius) {
  return Path::roundedRect({x, mid - height * 0.5, width, height}, radius);
}

// The sides and the bottom of a shape that hangs from the screen's edge: square at the top, round
// at the bottom.
Path hangingOutline(const Rect& rect, double radius) {
  const double r = std::max(std::min({radius, rect.width * 0.5, rect.height}), 0.0);
  return {{Path::MoveTo{{rect.minX(), rect.maxY()}}, Path::LineTo{{rect.minX(), rect.minY() + r}},
           Path::Arc{{rect.minX() + r, rect.minY() + r}, r, 180, 270, false},
           Path::LineTo{{rect.maxX() - r, rect.minY()}},
           Path::Arc{{rect.maxX() - r, rect.minY() + r}, r, 270, 360, false},
           Path::LineTo{{rect.maxX(), rect.maxY()}}}};
}

struct RoleFont {
  Font font;
  double kerning = 0;
};

RoleFont roleFont(PillRole role) {
  switch (role) {
    case PillRole::teams:
      return {{11, FontWeight::semibold}, 0.6};
    case PillRole::primary:
      return {{13, FontWeight::bold, true}, 0};
    case PillRole::secondary:
      return {{10, FontWeight::medium}, 0};
    case PillRole::tag:
      return {{9, FontWeight::bold}, 0.5};
    case PillRole::message:
      return {{12, FontWeight::medium}, 0};
    case PillRole::hint:
      return {{10, FontWeight::semibold}, 0};
    case PillRole::headline:
      return {{15, FontWeight::heavy}, 0.5};
    case PillRole::detail:
      return {{11, FontWeight::semibold}, 0};
  }
  return {};
}

// How far above the pill's middle a row's texts are placed, and by which height of theirs.
struct RowPlace {
  double rise = 0;
  double anchor = 0.5;
};

RowPlace rowPlace(PillElement::Row row) {
  switch (row) {
    case PillElement::Row::upper:
      return {1, 0};
    case PillElement::Row::lower:
      return {-1, 1};
    case PillElement::Row::middle:
      break;
  }
  return {};
}

}  // namespace

// At least one pixel each way: a thin rectangle between two pixels would be a smear.
Path PillView::crisp(const Rect& rect, const Pixels& pixels) {
  const Rect& bounds = pixels.bounds;
  const double scale = pixels.scale;
  const auto place = [scale](double value, double origin) {
    return origin + (std::round((value - origin) * scale) / scale);
  };
  const auto length = [scale](double value) {
    return std::max(std::round(value * scale), 1.0) / scale;
  };
  return Path::rect(
      {place(rect.x, bounds.x), place(rect.y, bounds.y), length(rect.width), length(rect.height)});
}

PillView::PillView(PillContent content, Desktop& desktop)
    : content_(std::move(content)),
      desktop_(desktop),
      reduceMotionChanged_(desktop.onReduceMotionChanged([this] { placeDot(); })) {}

void PillView::setContent(PillContent content) {
  const auto label = accessibilityLabel();
  content_ = std::move(content);
  widths_.clear();
  changed();
  if (surface_ && accessibilityLabel() != label) surface_->accessibilityLabelChanged();
}

void PillView::setTheme(const TeamTheme& theme) {
  if (theme_ == theme) return;
  theme_ = theme;
  changed();
}

void PillView::setEmphasis(PillEmphasis emphasis) {
  if (emphasis_ == emphasis) return;
  emphasis_ = emphasis;
  changed();
}

void PillView::setLayout(const std::optional<PillLayout>& layout) {
  layout_ = layout;
  changed();
}

void PillView::setSurface(PillSurface* surface) {
  surface_ = surface;
  placeDot();
}

void PillView::changed() {
  arrange();
  placeDot();
  if (surface_) surface_->setNeedsDisplay();
}

void PillView::placeDot() {
  if (surface_) surface_->setDot(dot());
}

MeasureText PillView::measure() const {
  return [this](std::string_view text, PillRole role) {
    const auto [known, isNew] = widths_.try_emplace({role, shown(text)});
    if (isNew) {
      const auto line = AttributedText{{known->first.second, attributes(role, white(1), {})}};
      known->second = desktop_.textMeasurer().measure(line).width;
    }
    return known->second;
  };
}

TextAttributes PillView::attributes(PillRole role, const Color& color,
                                    const std::optional<Color>& glow) {
  const auto [font, kerning] = roleFont(role);
  TextAttributes result{font, color, kerning, std::nullopt};
  if (glow) result.glow = Glow{*glow, glowRadius};
  return result;
}

PillView::Style PillView::style(PillRole role) const {
  const double strength = content_.isStale ? 0.5 : 1;
  const auto plain = [&](const Color& color) {
    return Style{attributes(role, color, std::nullopt)};
  };
  switch (role) {
    case PillRole::teams:
      return plain(white(0.7));
    case PillRole::primary:
      if (emphasis_ == PillEmphasis::flash) {
        return {attributes(role, {Palette::floodlight}, Color{Palette::amber, 0.9}), true};
      }
      return {attributes(role, {Palette::amber, strength}, Color{Palette::amber, 0.6 * strength})};
    case PillRole::secondary:
      return plain(white(0.55 * strength));
    case PillRole::tag:
      return plain(white(0.85));
    case PillRole::message:
      return plain(white(0.8));
    case PillRole::hint:
      return plain({Palette::amber, 0.8});
    case PillRole::headline:
      return {attributes(role, {Palette::floodlight}, Color{Palette::floodlight, 0.45})};
    case PillRole::detail:
      break;
  }
  return plain(white(1));
}

PillView::Region PillView::region(PillComposer::Part part, const Rect& rect) const {
  return {rect, PillComposer::arrange(content_, part, rect.width,
                                      emphasis_ == PillEmphasis::expanded, measure())};
}

// Laid out once for every change, not for every picture.
void PillView::arrange() {
  regions_.clear();
  if (!layout_) return;
  if (const auto* drawn = std::get_if<PillLayout::Drawn>(&layout_->form)) {
    regions_.push_back(region(PillComposer::Part::drawn, drawn->rect));
  } else if (const auto* notch = std::get_if<PillLayout::Notch>(&layout_->form)) {
    regions_.push_back(region(PillComposer::Part::leftWing, notch->left));
    regions_.push_back(region(PillComposer::Part::rightWing, notch->right));
  }
}

void PillView::draw(Canvas& canvas, const Rect& bounds, double scale) {
  const Pixels pixels{bounds, scale > 0 ? scale : scaleWithoutScreen};
  drawBackground(canvas, pixels);
  for (const auto& region : regions_) {
    for (const auto& element : region.elements) drawElement(canvas, element, region.rect, pixels);
  }
}

void PillView::drawBackground(Canvas& canvas, const Pixels& pixels) const {
  const Rect& bounds = pixels.bounds;
  const bool isNotch = layout_ && std::holds_alternative<PillLayout::Notch>(layout_->form);
  const double radius = isNotch ? wingRadius : capsuleRadius;

  Path shape = hangingOutline(bounds, radius);
  shape.steps.emplace_back(Path::Close{});
  canvas.fillGradient(shape, {Palette::navy}, {Palette::black}, -90);

  const auto strip =
      emphasis_ == PillEmphasis::expanded ? std::optional(Palette::ball) : theme_.accent();
  if (strip) {
    const ClipScope clip(canvas, shape);
    canvas.fill(crisp({bounds.minX(), bounds.minY(), bounds.width, stripHeight}, pixels), {*strip});
  }

  const double hairline = 1 / pixels.scale;
  const double inset = hairline * 0.5;
  const Rect edge{bounds.x + inset, bounds.y + inset, bounds.width - hairline,
                  bounds.height - hairline};
  canvas.stroke(hangingOutline(edge, radius - inset), white(0.1), hairline);
}

void PillView::drawElement(Canvas& canvas, const PillElement& element, const Rect& rect,
                           const Pixels& pixels) const {
  const double x = rect.minX() + element.x;
  const double mid = rect.midY();
  if (std::holds_alternative<PillElement::Divider>(element.kind)) {
    canvas.fill(crisp({x, mid - 6, element.width, 12}, pixels), white(0.15));
  } else if (const auto* text = std::get_if<PillElement::Text>(&element.kind)) {
    drawText(canvas, element, *text, x, mid);
  }
}

void PillView::drawText(Canvas& canvas, const PillElement& element, const PillElement::Text& text,
                        double x, double mid) const {
  const auto [textAttributes, isFlashing] = style(text.role);
  const auto line = attributed(text, textAttributes);
  if (text.role == PillRole::tag) {
    canvas.fill(roundedBadge(x, mid, element.width, badgeHeight, badgeHeight * 0.5), white(0.15));
    // The kerning after the last letter would leave the text a quarter of a point too far left.
    canvas.drawText(line, {x + element.width * 0.5 + 0.25, mid}, {0.5, 0.5});
    return;
  }
  if (isFlashing) {
    canvas.fill(roundedBadge(x - 3, mid, element.width + 6, highlightHeight, 5),
                {Palette::amber, 0.22});
  }
  const auto [rise, anchor] = rowPlace(element.row);
  canvas.drawText(line, {x, mid + rise}, {0, anchor});
}

AttributedText PillView::attributed(const PillElement::Text& text,
                                    const TextAttributes& attributes) const {
  if (text.role != PillRole::teams) return {{shown(text.text), attributes}};
  AttributedText line;
  for (const auto& run : content_.teamRuns(text.text)) {
    TextAttributes own = attributes;
    if (run.batting) {
      own.color = white(1);
    } else if (run.text == " v ") {
      own.color = white(0.45);
    }
    line.push_back({shown(run.text), own});
  }
  return line;
}

std::optional<DotAppearance> PillView::dot() const {
  DotAppearance dot;
  switch (content_.dot()) {
    case PillContent::Dot::none:
      return std::nullopt;
    case PillContent::Dot::live:
      dot.color = {Palette::ball};
      dot.shadowRadius = 5;
      dot.shadowOpacity = 1;
      dot.pulses = !desktop_.reduceMotion();
      break;
    case PillContent::Dot::amber:
      dot.color = {Palette::amber};
      dot.shadowRadius = 3;
      dot.shadowOpacity = 0.6;
      break;
    case PillContent::Dot::grey:
      dot.color = {Palette::grey};
      dot.shadowRadius = 3;
      dot.shadowOpacity = 0;
      break;
  }
  const auto accent = theme_.accent();
  dot.shadowColor = accent ? Color{*accent} : dot.color;

  constexpr double size = PillComposer::dotSize;
  dot.cornerRadius = size * 0.5;
  for (const auto& [rect, elements] : regions_) {
    for (const auto& element : elements) {
      if (!std::holds_alternative<PillElement::Dot>(element.kind)) continue;
      const double x = rect.minX() + element.x + element.width * 0.5;
      dot.frame = {x - size * 0.5, rect.midY() - size * 0.5, size, size};
      return dot;
    }
  }
  return std::nullopt;
}

void PillView::click() {
  if (onClick) onClick();
}

std::string PillView::accessibilityLabel() const {
  return text::readable(content_.accessibilityLabel());
}

}  // namespace kestrow
