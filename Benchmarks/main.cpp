// What is drawn and what Qt does, measured on the display there is; QT_QPA_PLATFORM=offscreen does
// without one.
#include <QApplication>
#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
