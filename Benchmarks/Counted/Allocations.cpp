#include "Benchmarks/Counted/Allocations.hpp"

#include <cstddef>

// The C library's own functions, behind those that it lets a program put in their place.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the C library's names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}

namespace {

constinit thread_local std::int64_t made = 0;

}  // namespace

extern "C" {

void* malloc(std::size_t size) noexcept {
  ++made;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  ++made;
  return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept {
  ++made;
  return __libc_realloc(block, size);
}
}

namespace kestrow {

Allocations::Allocations(benchmark::State& state) : state_(state), before_(made) {}

Allocations::~Allocations() {
  state_.counters["allocations"] =
      benchmark::Counter(static_cast<double>(made - before_), benchmark::Counter::kAvgIterations);
}

}  // namespace kestrow
