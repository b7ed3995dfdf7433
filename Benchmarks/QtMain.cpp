// What is drawn and what Qt does, measured on the display there is; QT_QPA_PLATFORM=offscreen does
// without one. Memory is given back as the program gives it back.
#include "KestrowCore/FreedMemory.hpp"

#include <QApplication>
#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  kestrow::returnFreedMemory();
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
