#include "Tests/Soak/Measures.hpp"

#include <malloc.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kestrow {
namespace {

std::size_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t residentAnonymousBytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::size_t kibibytes = 0;
    if (word == "RssAnon:" && status >> kibibytes) return kibibytes << 10U;
  }
  return 0;
}

}  // namespace

Measures measureNow() {
  const auto heap = mallinfo2();
  return {.heapBytes = heap.uordblks + heap.hblkhd,
          .residentBytes = residentAnonymousBytes(),
          // The folder's own descriptor is open while it is counted.
          .openFiles = entriesOf("/proc/self/fd") - 1,
          .threads = entriesOf("/proc/self/task")};
}

}  // namespace kestrow
