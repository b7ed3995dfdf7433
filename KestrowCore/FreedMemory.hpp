// What becomes of memory that the program has freed.
#pragma once

namespace kestrow {

// From here on, what a long answer needed goes back to the system as soon as it is freed, and all
// threads share one pool: by default the allocator keeps the first for next time, and a pool for
// each thread. Before there are threads. Does nothing where the allocator can't be told.
void returnFreedMemory();

}  // namespace kestrow
