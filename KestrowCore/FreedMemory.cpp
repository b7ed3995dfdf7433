#include "KestrowCore/FreedMemory.hpp"

#include <cstdlib>  // says whose the C library is

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace kestrow {

void returnFreedMemory() {
#ifdef __GLIBC__
  constexpr int longBlock = 128 * 1024;
  // Setting it stops the allocator from raising it to the longest block freed so far.
  mallopt(M_MMAP_THRESHOLD, longBlock);
  mallopt(M_ARENA_MAX, 1);
#endif
}

}  // namespace kestrow
