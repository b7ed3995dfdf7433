// The answer of the list endpoint.
#include "Fuzzers/Answer.hpp"
#include "Fuzzers/Fuzzer.hpp"
#include "Fuzzers/Shown.hpp"
#include "KestrowCore/MatchCoding.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrow;
  const auto response = fuzz::decoded<MatchesResponse>(fuzz::textOf(data, size));
  if (response) fuzz::show(*response);
  return 0;
}
