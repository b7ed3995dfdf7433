// kestrow-soak: plays days of the program in quickened time, with a score service that misbehaves,
// and prints what that took. Fails when the program grew, kept something, or woke without need.
#include "Tests/Soak/Soak.hpp"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

using namespace kestrow;

namespace {

double megabytes(std::size_t bytes) {
  return static_cast<double>(bytes) / (1 << 20U);
}

void print(const char* when, const Measures& measures) {
  std::printf("| %s | %.3f | %.2f | %zu | %zu |\n", when, megabytes(measures.heapBytes),
              megabytes(measures.residentBytes), measures.openFiles, measures.threads);
}

void print(const SoakReport& report) {
  std::printf(
      "%ld minutes awake, %ld nights, %ld matches picked\n"
      "%ld polls, of which %ld failed; %ld requests for key events; %ld alerts\n"
      "%ld wake-ups: one for each minute and each alert's end make %ld\n\n"
      "| hour | heap, MB | own resident, MB | files | threads |\n|---|---|---|---|---|\n",
      report.minutesAwake, report.nights, report.picks, report.polls, report.failedPolls,
      report.keyEventRequests, report.alerts, report.wakeUps, report.minutesAwake + report.alerts);
  print("before", report.before);
  constexpr std::size_t lines = 12;
  const std::size_t every = report.samples.size() / lines + 1;
  for (std::size_t i = 0; i < report.samples.size(); i += every) {
    print(std::to_string(report.samples[i].hour).c_str(), report.samples[i].measures);
  }
  if (!report.samples.empty()) print("last", report.samples.back().measures);
  print("after", report.after);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  CLI::App app("Plays days of Kestrow in quickened time", "kestrow-soak");
  SoakOptions options{.faults = usualFaults()};
  int hours = static_cast<int>(options.length.count());
  std::vector<std::string> faults;
  app.add_option("--hours", hours, "Length of the simulated time")
      ->check(CLI::Range(1, 24 * 366))
      ->capture_default_str();
  app.add_option("--seed", options.seed, "Decides the matches")->capture_default_str();
  app.add_option("--fault", faults,
                 "What the service does wrong, in place of a bit of everything, in the words of "
                 "kestrow-score-service; \"none\" for nothing")
      ->type_name("FAULT")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  CLI11_PARSE(app, argumentCount, arguments);
  options.length = std::chrono::hours(hours);
  if (!faults.empty()) options.faults.clear();
  for (const std::string& text : faults) {
    if (text == "none") continue;
    const auto fault = service::parseFault(text);
    if (!fault) {
      std::fprintf(stderr, "kestrow-soak: %s\n", fault.error().c_str());
      return 2;
    }
    options.faults.push_back(*fault);
  }

  const SoakReport report = soak(options);
  print(report);
  // Longer than the test's: a week's matches are listed with more innings than a day's.
  auto wrong = judge(report, {.heapBytes = std::size_t{256} << 10U});
  wrong.insert(wrong.begin(), report.mistakes.begin(), report.mistakes.end());
  for (const std::string& one : wrong) std::printf("wrong: %s\n", one.c_str());
  return wrong.empty() ? 0 : 1;
}
