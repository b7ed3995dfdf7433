// Changing the state file, beside the bare system calls that keeping a small file whole takes: read
// the old one, write the new one beside it, put it in its place.
#include "KestrowCore/LocalStore.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

namespace kestrow {
namespace {

constexpr auto id = "match-1";

void updateStore(benchmark::State& state) {
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  std::int64_t event = 0;
  for (auto _ : state) {
    const auto saved = store.update([&](StoredState& stored) {
      stored.followedMatchId = id;
      stored.lastEventIdByMatch = {{id, ++event}};
    });
    if (!saved) state.SkipWithError("not saved");
  }
}
BENCHMARK(updateStore)->Name("Store/ours");

void bareSystemCalls(benchmark::State& state) {
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  (void)store.setFollowedMatchId(id);
  const auto file = store.fileUrl().string();
  const auto beside = (folder.path() / ".state.bare.tmp").string();
  std::array<char, 4096> bytes{};
  for (auto _ : state) {
    const int old = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    const auto length = ::read(old, bytes.data(), bytes.size());
    ::close(old);
    const int fresh = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (length <= 0 || ::write(fresh, bytes.data(), static_cast<std::size_t>(length)) != length) {
      state.SkipWithError("not written");
    }
    ::close(fresh);
    if (std::rename(beside.c_str(), file.c_str()) != 0) state.SkipWithError("not renamed");
  }
}
BENCHMARK(bareSystemCalls)->Name("Store/bare");

}  // namespace
}  // namespace kestrow
