#include "Tests/Gallery/PillGallery.hpp"

#include "Kestrow/PillWindow.hpp"
#include "Kestrow/Qt/QtCanvas.hpp"
#include "Kestrow/Qt/QtDot.hpp"
#include "Kestrow/Qt/QtText.hpp"
#include "Tests/Support/FakeDesktop.hpp"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace kestrow::gallery {

namespace {

enum class Variant { plain, sample, stale, narrow };
enum class Form { drawn, notch };

constexpr std::array themes{"default", "csk", "rr"};
constexpr std::array emphases{PillEmphasis::none, PillEmphasis::flash, PillEmphasis::expanded};
constexpr std::array variants{Variant::plain, Variant::sample, Variant::stale, Variant::narrow};
constexpr std::array forms{Form::drawn, Form::notch};

constexpr double barHeight = 24;
constexpr double notchHeight = 32;
constexpr double notchWidth = 120;
constexpr Size cell{532, 54};
const QColor wallpaper(0x5f, 0x72, 0x88);

class GalleryDesktop final : public FakeDesktop {
 public:
  TextMeasurer& textMeasurer() override { return measurer_; }

 private:
  qt::QtTextMeasurer measurer_;
};

struct Named {
  const char* name;
  PillContent content;
};

PillContent content(PillContent::Status status, const char* primary,
                    const char* secondary = nullptr, const char* teams = nullptr,
                    const char* batting = nullptr) {
  PillContent result;
  result.status = status;
  result.primary = primary;
  if (secondary) result.secondary = secondary;
  if (teams) result.teams = teams;
  if (batting) result.battingTeam = batting;
  return result;
}

const std::vector<Named>& contents() {
  using Status = PillContent::Status;
  static const std::vector<Named> all{
      {"live", content(Status::live, "145/3", "15.2 ov", "MI v CSK", "MI")},
      {"innings-break", content(Status::inningsBreak, "187/6", "Innings break", "MI v CSK", "CSK")},
      {"not-started", content(Status::notStarted, "Today 7:30 PM", nullptr, "RR v GT")},
      {"finished", content(Status::finished, "RCB won by 7 wickets", nullptr, "RCB v KKR")},
      {"pick-match", content(Status::pickMatch, PillDisplay::pickMatchText)},
      {"loading", content(Status::loading, PillDisplay::loadingText)},
      {"unavailable", content(Status::unavailable, PillDisplay::unavailableText)},
      {"countdown",
       content(Status::countdown, "2h 14m", PillContent::countdownSecondary, "IND v AUS")},
      {"boom", PillContent::boom("WICKET!", "R Sharma (MI)")}};
  return all;
}

Screen screen(Form form, Variant variant) {
  // As beside a real housing, more than a wing may take.
  const double room = variant == Variant::narrow ? 96 : 205;
  if (form == Form::drawn) {
    const double width = variant == Variant::narrow ? 150 : 440;
    return FakeDesktop::screen({0, 0, width, 300}, barHeight);
  }
  const double width = notchWidth + 2 * room;
  Screen result = FakeDesktop::screen({0, 0, width, 300}, notchHeight);
  result.info.safeAreaTop = notchHeight;
  result.info.auxiliaryTopLeftArea = Rect{0, 300 - notchHeight, room, notchHeight};
  result.info.auxiliaryTopRightArea = Rect{width - room, 300 - notchHeight, room, notchHeight};
  return result;
}

// The camera housing that hides what is behind it.
void drawHousing(QPainter& painter, const QRectF& housing) {
  constexpr double radius = 8;
  QPainterPath path;
  path.addRoundedRect(housing.adjusted(0, -radius, 0, 0), radius, radius);
  painter.save();
  painter.setClipRect(housing);
  painter.fillPath(path, Qt::black);
  painter.restore();
}

struct Look {
  PillContent content;
  Form form = Form::drawn;
  const char* theme = themes[0];
  PillEmphasis emphasis = PillEmphasis::none;
  Variant variant = Variant::plain;
};

// The pill as the program shows it, at the top of a strip of screen with its middle at `middle`.
void drawPill(QPainter& painter, Look look, double middle, double scale) {
  look.content.isSample = look.variant == Variant::sample;
  look.content.isStale = look.variant == Variant::stale;
  GalleryDesktop desktop;
  FakeDefaults defaults;
  desktop.attachedScreens = {screen(look.form, look.variant)};
  const Rect whole = desktop.attachedScreens.front().info.frame;
  PillController pill(look.content, defaults, desktop);
  pill.show(look.content, TeamTheme::named(look.theme), look.emphasis, false);
  const auto surface = desktop.surface();
  const Rect bounds{0, 0, surface->frame.width, surface->frame.height};

  painter.save();
  painter.translate(std::round(middle + surface->frame.x - whole.midX()), 0);
  // A window shows nothing beyond its edges.
  painter.setClipRect(QRectF(0, 0, bounds.width, bounds.height));
  qt::QtCanvas canvas(painter, bounds, scale);
  surface->client->draw(canvas, bounds, scale);
  auto dot = surface->dot;
  if (dot) dot->pulses = false;
  qt::QtDot light([] {});
  light.show(dot);
  light.paint(painter, bounds, scale);
  if (look.form == Form::notch) {
    const double left = whole.midX() - notchWidth * 0.5 - surface->frame.x;
    drawHousing(painter, QRectF(left, 0, notchWidth, notchHeight));
  }
  painter.restore();
}

// A line of the contact sheet: one content as a capsule and beside a housing.
struct Row {
  const char* caption;
  std::vector<Look> looks;
};

std::vector<Row> sheetRows() {
  using Emphasis = PillEmphasis;
  const auto of = [](std::size_t which) { return contents()[which].content; };
  const auto row = [](const char* caption, const PillContent& one, Emphasis emphasis = {},
                      Variant variant = {}, const char* theme = "default") {
    return Row{caption,
               {{one, Form::drawn, theme, emphasis, variant},
                {one, Form::notch, theme, emphasis, variant}}};
  };
  return {row("Live", of(0)),
          row("Live, Chennai's colours", of(0), Emphasis::none, Variant::plain, "csk"),
          row("Innings break, Rajasthan's colours", of(1), Emphasis::none, Variant::plain, "rr"),
          row("Before the start", of(2)),
          row("Finished", of(3)),
          row("Countdown to the next match", of(7)),
          row("Nothing picked yet", of(4)),
          row("Loading", of(5)),
          row("No answer", of(6)),
          row("Sample data", of(0), Emphasis::none, Variant::sample),
          row("Old score", of(0), Emphasis::none, Variant::stale),
          row("Little room", of(0), Emphasis::none, Variant::narrow),
          row("Subtle alert", of(0), Emphasis::flash),
          row("Big alert", of(8), Emphasis::expanded),
          row("Names in other scripts",
              content(PillContent::Status::live, "145/3", "15.2 ov", "मुंबई v சென்னை", "मुंबई")),
          row("Right to left",
              content(PillContent::Status::live, "88/2", "10 ov", "كراتشي v لاهور", "لاهور")),
          row("Emoji", content(PillContent::Status::live, "31/0", "4.1 ov", "🐯 v 🦁🔥", "🐯"))};
}

QImage empty(const Size& size, double scale, const QColor& color) {
  QImage image(static_cast<int>(std::lround(size.width * scale)),
               static_cast<int>(std::lround(size.height * scale)), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(color);
  return image;
}

}  // namespace

std::vector<std::string> stripNames() {
  std::vector<std::string> names;
  for (const auto& one : contents()) names.emplace_back(one.name);
  return names;
}

QString stripFile(const std::string& name, double scale) {
  return QStringLiteral("%1@%2x.png").arg(QString::fromStdString(name)).arg(scale);
}

QImage strip(const std::string& name, double scale) {
  const auto found = std::find_if(contents().begin(), contents().end(),
                                  [&](const Named& one) { return one.name == name; });
  if (found == contents().end()) return {};
  const auto rows = static_cast<double>(forms.size() * emphases.size() * variants.size());
  QImage image = empty({cell.width * static_cast<double>(themes.size()), cell.height * rows}, scale,
                       wallpaper);
  QPainter painter(&image);
  for (const auto form : forms) {
    for (const auto emphasis : emphases) {
      for (const auto variant : variants) {
        double middle = cell.width * 0.5;
        for (const auto* theme : themes) {
          drawPill(painter, {found->content, form, theme, emphasis, variant}, middle, scale);
          middle += cell.width;
        }
        painter.translate(0, cell.height);
      }
    }
  }
  return image;
}

QImage contactSheet(double scale) {
  const auto rows = sheetRows();
  constexpr double captionWidth = 190;
  constexpr double rowHeight = 58;
  QImage image =
      empty({captionWidth + 2 * cell.width, rowHeight * static_cast<double>(rows.size())}, scale,
            wallpaper);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const auto& [caption, looks] : rows) {
    painter.setPen(QColor(255, 255, 255, 210));
    painter.setFont(qt::interfaceFont({11, FontWeight::medium, false}));
    painter.drawText(QPointF(16, 17), QString::fromUtf8(caption));
    double middle = captionWidth + cell.width * 0.5;
    for (const auto& look : looks) {
      drawPill(painter, look, middle, scale);
      middle += cell.width;
    }
    painter.fillRect(QRectF(0, rowHeight - 1, captionWidth + 2 * cell.width, 1),
                     QColor(0, 0, 0, 40));
    painter.translate(0, rowHeight);
  }
  return image;
}

Difference difference(const QImage& one, const QImage& other, int tolerance) {
  if (one.size() != other.size()) return {std::max(one.width() * one.height(), 1), {}};
  const QImage left = one.convertToFormat(QImage::Format_RGB32);
  const QImage right = other.convertToFormat(QImage::Format_RGB32);
  Difference result{0, QImage(one.size(), QImage::Format_RGB32)};
  for (int y = 0; y < left.height(); ++y) {
    const auto* ours = reinterpret_cast<const QRgb*>(left.constScanLine(y));
    const auto* theirs = reinterpret_cast<const QRgb*>(right.constScanLine(y));
    auto* shown = reinterpret_cast<QRgb*>(result.picture.scanLine(y));
    for (int x = 0; x < left.width(); ++x) {
      const QRgb a = ours[x];
      const QRgb b = theirs[x];
      const int apart = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                  std::abs(qBlue(a) - qBlue(b))});
      result.pixels += apart > tolerance ? 1 : 0;
      shown[x] = qRgb(apart > tolerance ? 255 : apart, qGray(b) / 4, qGray(b) / 4);
    }
  }
  return result;
}

}  // namespace kestrow::gallery
