#include "KestrowCore/KeyMomentsLog.hpp"

#include <benchmark/benchmark.h>

#include <vector>

namespace kestrow {
namespace {

BoomEvent boom(std::int64_t id) {
  return {.id = id, .kind = BoomKind::six, .team = "MI", .batter = "Rohit Gurunath Sharma"};
}

// Even ids, so that there is room between them.
KeyMomentsLog logOf(std::int64_t length) {
  KeyMomentsLog log;
  for (std::int64_t entry = 0; entry < length; ++entry) log.entries.push_back(boom(entry * 2));
  return log;
}

// The usual case: the newest event comes, and the log grows by it.
void mergeOneNewEvent(benchmark::State& state) {
  auto log = logOf(state.range(0));
  auto id = state.range(0) * 2;
  for (auto _ : state) {
    log.merge({boom(id)});
    id += 2;
    if (std::ssize(log.entries) > state.range(0) * 2) {
      state.PauseTiming();
      log = logOf(state.range(0));
      id = state.range(0) * 2;
      state.ResumeTiming();
    }
  }
}
BENCHMARK(mergeOneNewEvent)->Arg(1'000)->Arg(10'000)->Arg(100'000);

// The worst case: an event before all others.
void mergeOneEventBeforeTheOthers(benchmark::State& state) {
  auto log = logOf(state.range(0));
  std::int64_t id = -1;
  for (auto _ : state) {
    log.merge({boom(id)});
    state.PauseTiming();
    log.entries.erase(log.entries.begin());
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(mergeOneEventBeforeTheOthers)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Complexity(benchmark::oN);

// A service that sends the whole log with each answer.
void mergeWhatIsKnown(benchmark::State& state) {
  auto log = logOf(state.range(0));
  const auto known = log.entries;
  for (auto _ : state) log.merge(known);
}
BENCHMARK(mergeWhatIsKnown)->Arg(1'000)->Arg(10'000);

}  // namespace
}  // namespace kestrow
