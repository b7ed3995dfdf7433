// What it costs to turn a content into placed elements, with a measure that costs nothing.
#include "Benchmarks/Counted/Allocations.hpp"
#include "KestrowCore/PillComposer.hpp"
#include "KestrowCore/ScoreText.hpp"

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

namespace kestrow {
namespace {

double measure(std::string_view text, PillRole) {
  return 7.0 * static_cast<double>(text.size());
}

PillContent live(std::string teams) {
  PillContent content;
  content.status = PillContent::Status::live;
  content.teams = std::move(teams);
  content.primary = "145/3";
  content.secondary = "15.2 ov";
  content.isStale = true;
  return content;
}

void composeAndArrange(benchmark::State& state, const PillContent& content, double width) {
  const Allocations counted(state);
  for ([[maybe_unused]] const auto turn : state) {
    benchmark::DoNotOptimize(
        PillComposer::contentWidth(content, PillComposer::Part::drawn, false, measure));
    benchmark::DoNotOptimize(
        PillComposer::arrange(content, PillComposer::Part::drawn, width, false, measure));
  }
}

BENCHMARK_CAPTURE(composeAndArrange, Fitting, live("Mi v Csk"), 400.0);
BENCHMARK_CAPTURE(composeAndArrange, Shortened, live("Mumbai v Chennai"), 240.0);
BENCHMARK_CAPTURE(composeAndArrange, ShortenedBeyondAscii, live("मुंबई v चेन्नई"), 240.0);

void shortenResult(benchmark::State& state) {
  Match match;
  match.team1 = {"Mumbai Indians", "MI"};
  match.team2 = {"Chennai Super Kings", "CSK"};
  const std::string status(static_cast<std::size_t>(state.range(0)), 'a');
  for ([[maybe_unused]] const auto turn : state)
    benchmark::DoNotOptimize(result_text::shortened(status, match));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(shortenResult)->RangeMultiplier(16)->Range(64, 1 << 20)->Complexity(benchmark::oN);

void wordStartTime(benchmark::State& state) {
  const Date now = systemNow();
  for ([[maybe_unused]] const auto turn : state) {
    benchmark::DoNotOptimize(start_time_text::standard(now + std::chrono::days(9)));
  }
}
BENCHMARK(wordStartTime);

}  // namespace
}  // namespace kestrow
