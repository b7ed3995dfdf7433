#include "Tests/Soak/Measures.hpp"
#include "Tests/Support/Sanitizers.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <latch>
#include <memory>
#include <thread>

namespace kestrow {
namespace {

TEST(Measures, CountMemoryThatIsUsed) {
  if (isAddressSanitized) GTEST_SKIP() << "another allocator";
  constexpr std::size_t size = 8U << 20U;
  const Measures before = measureNow();
  const auto memory = std::make_unique<char[]>(size);
  std::memset(memory.get(), 1, size);
  const Measures after = measureNow();
  EXPECT_GE(after.heapBytes, before.heapBytes + size);
  EXPECT_GE(after.residentBytes, before.residentBytes + size / 2);
}

TEST(Measures, CountOpenFiles) {
  const auto before = measureNow().openFiles;
  const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(measureNow().openFiles, before + 1);
  close(file);
  EXPECT_EQ(measureNow().openFiles, before);
}

TEST(Measures, CountThreads) {
  const auto before = measureNow().threads;
  std::latch end(1);
  std::thread other([&end] { end.wait(); });
  EXPECT_EQ(measureNow().threads, before + 1);
  end.count_down();
  other.join();
}

}  // namespace
}  // namespace kestrow
