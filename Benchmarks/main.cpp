// The core's benchmarks, with memory given back as the program gives it back.
#include "KestrowCore/FreedMemory.hpp"

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  kestrow::returnFreedMemory();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
