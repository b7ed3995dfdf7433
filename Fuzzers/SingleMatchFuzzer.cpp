// The answer of the single-match endpoint.
#include "Fuzzers/Answer.hpp"
#include "Fuzzers/Fuzzer.hpp"
#include "Fuzzers/Shown.hpp"
#include "KestrowCore/MatchCoding.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrow;
  const auto response = fuzz::decoded<MatchResponse>(fuzz::textOf(data, size));
  if (response && response->match) fuzz::show(MatchesResponse{.live = {*response->match}});
  return 0;
}
