// What holds for every answer of the score service, whichever of the three it is.
#pragma once

#include "Fuzzers/Fuzzer.hpp"
#include "KestrowCore/ScoreClient.hpp"

#include <optional>
#include <string_view>

namespace kestrow::fuzz {

// The answer that the bytes are, if any, decoded as the client does. What was decoded survives
// encoding and decoding; what was refused has a reason.
template <class T>
std::optional<T> decoded(std::string_view bytes) {
  auto answer = ScoreClient::decode<T>(bytes);
  if (!answer) {
    const auto& reason = std::get<ScoreClientError::Decoding>(answer.error().reason);
    require(!reason.description.empty(), "a refusal has a reason");
    return std::nullopt;
  }
  const auto again = ScoreClient::decode<T>(encode(*answer));
  require(again.has_value() && *again == *answer, "decode(encode(x)) is x");
  return *std::move(answer);
}

}  // namespace kestrow::fuzz
