// What a process holds at a moment, as the system counts it.
#pragma once

#include <cstddef>

namespace kestrow {

struct Measures {
  std::size_t heapBytes = 0;      // handed out by the allocator and not given back
  std::size_t residentBytes = 0;  // of its own: pages shared with files don't count
  std::size_t openFiles = 0;
  std::size_t threads = 0;
  bool operator==(const Measures&) const = default;
};

// Of this process.
Measures measureNow();

}  // namespace kestrow
