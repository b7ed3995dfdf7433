// Days of the program in quickened time: everything but the desktop is real, the score service
// misbehaves over real HTTP, the user looks in and picks matches, the machine sleeps at night.
#pragma once

#include "ScoreService/Faults.hpp"
#include "Tests/Soak/Measures.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kestrow {

struct SoakOptions {
  std::chrono::hours length{24 * 7};
  std::uint64_t seed = 1;  // of the matches
  std::vector<service::Fault> faults;
};

// Every kind of fault, each on its share of the requests: together on about a quarter of them.
std::vector<service::Fault> usualFaults();

struct SoakReport {
  struct Sample {
    std::int64_t hour = 0;
    Measures measures;
  };

  std::int64_t minutesAwake = 0;
  std::int64_t wakeUps = 0;  // by a wait that ended
  std::int64_t alerts = 0;
  std::int64_t polls = 0;
  std::int64_t failedPolls = 0;
  std::int64_t keyEventRequests = 0;
  std::int64_t picks = 0;
  std::int64_t nights = 0;      // each begins in the middle of a poll
  std::vector<Sample> samples;  // one for each hour awake, with nothing under way
  Measures before;
  Measures after;
  std::vector<std::string> mistakes;  // what the program did otherwise than it had to, in words
};

// Plays the days. Needs to be called while there is one thread.
SoakReport soak(const SoakOptions& options);

// How far a sample may be above the first hour's. The heap holds the followed match's key moments,
// a few hundred bytes each, of which the first hour may have seen none; the pages that it lies on
// are the allocator's business.
struct SoakTolerance {
  std::size_t heapBytes = std::size_t{128} << 10U;
  std::size_t residentBytes = std::size_t{1} << 20U;
};

// What is wrong with memory, files, threads and wake-ups, beside the report's own mistakes.
std::vector<std::string> judge(const SoakReport& report, const SoakTolerance& tolerance = {});

}  // namespace kestrow
