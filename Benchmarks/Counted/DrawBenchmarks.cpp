// What it costs to draw the pill, and to fit its texts in, with the desktop's fonts.
#include "Benchmarks/Counted/Allocations.hpp"
#include "Kestrow/PillWindow.hpp"
#include "Kestrow/Qt/QtCanvas.hpp"
#include "Kestrow/Qt/QtText.hpp"
#include "KestrowCore/PillComposer.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/Records.hpp"

#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>

namespace kestrow {
namespace {

class MeasuringDesktop final : public FakeDesktop {
 public:
  TextMeasurer& textMeasurer() override { return measurer_; }

 private:
  qt::QtTextMeasurer measurer_;
};

// The picture anew, at so many pixels for a point.
void drawPill(benchmark::State& state) {
  const auto scale = static_cast<double>(state.range(0));
  MeasuringDesktop desktop;
  FakeDefaults defaults;
  PillController pill(records::liveContent(), defaults, desktop);
  pill.show(records::liveContent(), TeamTheme::standard(), PillEmphasis::none, false);
  const auto surface = desktop.surface();
  const Rect bounds{0, 0, surface->frame.width, surface->frame.height};
  QImage picture(static_cast<int>(std::ceil(bounds.width * scale)),
                 static_cast<int>(std::ceil(bounds.height * scale)),
                 QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  const Allocations counted(state);
  for ([[maybe_unused]] const auto turn : state) {
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    qt::QtCanvas canvas(painter, bounds, scale);
    surface->client->draw(canvas, bounds, scale);
  }
}
BENCHMARK(drawPill)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// From a content to the window's new place and shape: what a new score takes before it is drawn.
void showNewScore(benchmark::State& state) {
  MeasuringDesktop desktop;
  FakeDefaults defaults;
  PillContent content = records::liveContent();
  PillController pill(content, defaults, desktop);
  int runs = 0;
  const Allocations counted(state);
  for ([[maybe_unused]] const auto turn : state) {
    runs = (runs + 1) % 400;
    content.primary = std::to_string(runs) + "/3";
    pill.show(content, TeamTheme::standard(), PillEmphasis::none, false);
    desktop.surface()->moves.clear();
  }
}
BENCHMARK(showNewScore)->Unit(benchmark::kMicrosecond);

// Team names that have to be cut, each cut measured.
void truncateTeams(benchmark::State& state) {
  MeasuringDesktop desktop;
  const PillContent content = records::liveContent("Mumbai Indians v Royal Challengers Bengaluru");
  PillView view(content, desktop);
  const MeasureText measure = view.measure();
  const Allocations counted(state);
  for ([[maybe_unused]] const auto turn : state) {
    view.setContent(content);  // forgets what was measured
    benchmark::DoNotOptimize(
        PillComposer::arrange(content, PillComposer::Part::drawn, 240, false, measure));
  }
}
BENCHMARK(truncateTeams)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kestrow
