// How often a benchmark's loop asks for memory.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

namespace kestrow {

// Counts this thread's allocations from here to its end, those of the libraries too, and reports
// them as "allocations" for each turn of the loop.
class Allocations {
 public:
  explicit Allocations(benchmark::State& state);
  Allocations(const Allocations&) = delete;
  Allocations& operator=(const Allocations&) = delete;
  ~Allocations();

 private:
  benchmark::State& state_;
  std::int64_t before_;
};

}  // namespace kestrow
