#include "KestrowCore/FreedMemory.hpp"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "Tests/Support/Sanitizers.hpp"

#include <cstddef>
#include <memory>

namespace kestrow {
namespace {

#ifdef __GLIBC__

TEST(FreedMemory, OfALongAnswerGoesBackToTheSystemEachTime) {
  if (isAddressSanitized) GTEST_SKIP() << "another allocator";
  returnFreedMemory();
  for (int time = 0; time < 3; ++time) {
    const auto before = mallinfo2();
    auto answer = std::make_unique<char[]>(std::size_t{8} << 20U);
    EXPECT_GE(mallinfo2().hblkhd, before.hblkhd + (std::size_t{8} << 20U));
    answer.reset();
    EXPECT_EQ(mallinfo2().hblkhd, before.hblkhd);
    EXPECT_EQ(mallinfo2().arena, before.arena);
  }
}

#endif

}  // namespace
}  // namespace kestrow
