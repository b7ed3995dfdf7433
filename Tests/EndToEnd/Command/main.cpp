// kestrow-replay-check FOLDER [SPEED]: plays every match file of a folder through service and
// pollers, and prints a table of what was expected and what was shown. Fails when they differ.
#include "Tests/EndToEnd/ReplayCheck.hpp"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

using namespace kestrow;

namespace {

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string counts(std::size_t fours, std::size_t sixes, std::size_t wickets) {
  return std::to_string(fours) + "/" + std::to_string(sixes) + "/" + std::to_string(wickets);
}

void print(const ReplayReport& report) {
  std::cout << "| " << report.match << " | "
            << counts(report.expectedFours, report.expectedSixes, report.expectedWickets) << " | "
            << counts(report.shownFours, report.shownSixes, report.shownWickets) << " | "
            << report.alertsDue << " | " << report.alertsShown << " | "
            << report.expectedFours + report.expectedSixes + report.expectedWickets << " | "
            << report.logLines << " | " << joined(report.expectedScores) << " | "
            << joined(report.scores) << " | " << report.expectedResult << " | " << report.result
            << " | " << (report.mistakes.empty() ? "right" : joined(report.mistakes)) << " |\n";
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const double speed = argumentCount == 3 ? std::atof(arguments[2]) : 1;
  if (argumentCount < 2 || argumentCount > 3 || !(speed > 0)) {
    std::cerr << "usage: kestrow-replay-check FOLDER [SPEED]\n";
    return 2;
  }
  std::error_code error;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1], error)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  if (error || files.empty()) {
    std::cerr << "kestrow-replay-check: no match files in " << arguments[1] << "\n";
    return 2;
  }
  std::ranges::sort(files);
  std::cout << "| match | 4/6/W in the file | 4/6/W alerted | alerts due | shown | key moments | "
               "log lines | scores in the file | shown | outcome in the file | shown | verdict |\n"
            << "|---|---|---|---|---|---|---|---|---|---|---|---|\n";
  bool isRight = true;
  for (const auto& file : files) {
    const ReplayReport report = checkReplay(file, speed);
    print(report);
    isRight = isRight && report.mistakes.empty();
  }
  return isRight ? 0 : 1;
}
