// How long the panel takes to open and to refresh.
#include "Kestrow/PanelNodes.hpp"
#include "Kestrow/PanelView.hpp"
#include "Kestrow/Qt/QtPanelWindow.hpp"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kestrow {
namespace {

class SilentClient final : public PanelSurfaceClient {
 public:
  void radioButtonPicked(const std::string& /*id*/) override {}
  void popUpChanged(const std::string& /*id*/, int /*selected*/) override {}
  void checkBoxToggled(const std::string& /*id*/, bool /*isOn*/) override {}
  void buttonPressed(const std::string& /*id*/) override {}
  void clickedOutside() override {}
  bool escapePressed() override { return false; }
  void resignedKey() override {}
};

BoomEvent boom(std::int64_t id) {
  return {.id = id, .kind = BoomKind::six, .team = "MI", .batter = "Rohit Gurunath Sharma"};
}

KeyMomentsLog logOf(std::int64_t length) {
  KeyMomentsLog log;
  for (std::int64_t id = 0; id < length; ++id) log.entries.push_back(boom(id));
  return log;
}

PickerState matches(std::int64_t count) {
  PickerSection live{.title = "Live", .rows = {}};
  for (std::int64_t i = 0; i < count; ++i) {
    live.rows.push_back({.id = std::to_string(i),
                         .teams = "Mumbai Indians v Chennai Super Kings",
                         .competition = "Indian Premier League",
                         .detail = "MI 145/3 (15.2)",
                         .isLive = true});
  }
  return {PickerState::Loaded{.sections = {live}, .isSample = false}};
}

PanelNode content(std::int64_t matchCount, const KeyMomentsLog& log) {
  PanelState state;
  state.matches = panel_nodes::matches(matches(matchCount), "0");
  state.log = panel_nodes::log(log);
  return panel_nodes::tree(state, false);
}

void place(qt::QtPanelWindow& window) {
  const Screen screen{.info = {.frame = {0, 0, 1280, 800}}, .visibleFrame = {0, 0, 1280, 800}};
  window.setFrame(PanelController::frameFor(std::span(&screen, 1), std::nullopt, std::nullopt,
                                            window.fittingHeight()));
}

// From nothing to a painted window: matches, lines of the log.
void openFirstTime(benchmark::State& state) {
  SilentClient client;
  const auto log = logOf(state.range(1));
  for (auto _ : state) {
    qt::QtPanelWindow window(client);
    window.setContent(content(state.range(0), log));
    place(window);
    window.showAndMakeKey();
    window.repaint();
  }
}
BENCHMARK(openFirstTime)
    ->Args({4, 10})
    ->Args({4, 100})
    ->Args({4, 1'000})
    ->Args({200, 1'000})
    ->Unit(benchmark::kMillisecond);

// The same window again, after it was closed.
void openAgain(benchmark::State& state) {
  SilentClient client;
  const auto log = logOf(state.range(1));
  qt::QtPanelWindow window(client);
  for (auto _ : state) {
    window.setContent(content(state.range(0), log));
    place(window);
    window.showAndMakeKey();
    window.repaint();
    state.PauseTiming();
    window.orderOut();
    state.ResumeTiming();
  }
}
BENCHMARK(openAgain)
    ->Args({4, 10})
    ->Args({4, 100})
    ->Args({200, 1'000})
    ->Unit(benchmark::kMillisecond);

// What render() does to an open panel when a key moment has come: the tree anew, its differences
// into the window, and the paint.
void refreshWithOneNewMoment(benchmark::State& state) {
  SilentClient client;
  auto log = logOf(state.range(1));
  qt::QtPanelWindow window(client);
  window.setContent(content(state.range(0), log));
  place(window);
  window.showAndMakeKey();
  window.repaint();
  std::int64_t id = state.range(1);
  for (auto _ : state) {
    log.entries.push_back(boom(id++));
    window.setContent(content(state.range(0), log));
    place(window);
    window.repaint();
  }
}
BENCHMARK(refreshWithOneNewMoment)
    ->Args({4, 10})
    ->Args({4, 100})
    ->Args({4, 1'000})
    ->Args({200, 1'000})
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);

// And when nothing has changed.
void refreshWithoutNews(benchmark::State& state) {
  SilentClient client;
  const auto log = logOf(state.range(1));
  qt::QtPanelWindow window(client);
  window.setContent(content(state.range(0), log));
  place(window);
  window.showAndMakeKey();
  for (auto _ : state) {
    window.setContent(content(state.range(0), log));
    place(window);
  }
}
BENCHMARK(refreshWithoutNews)->Args({200, 1'000})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kestrow
