// The answer of the key-event endpoint.
#include "Fuzzers/Answer.hpp"
#include "Fuzzers/Fuzzer.hpp"
#include "Fuzzers/Shown.hpp"
#include "KestrowCore/BoomEventCoding.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrow;
  const auto payload = fuzz::decoded<ProMatchPayload>(fuzz::textOf(data, size));
  if (payload) fuzz::show(*payload);
  return 0;
}
