// The HTTP client of the score service.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Http.hpp"
#include "KestrowCore/Match.hpp"
#include "KestrowCore/Task.hpp"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kestrow {

// An answer came, but not one to use.
struct ScoreClientError {
  struct Http {
    int status = 0;  // outside 200 to 299
    bool operator==(const Http&) const = default;
  };
  struct Decoding {
    std::string description;  // where in the answer, and why
    bool operator==(const Decoding&) const = default;
  };
  std::variant<Http, Decoding> reason;
  bool operator==(const ScoreClientError&) const = default;
};

// Why a request to the score service gave nothing.
using FeedError = std::variant<TransportError, ScoreClientError>;

template <class T>
using FeedResult = std::expected<T, FeedError>;

// A plain value; copies are alike. Holds no state that changes.
struct ScoreClient {
  // The service that this build asks: scheme, host and port.
  static const std::string defaultBaseUrl;

  std::string baseUrl = defaultBaseUrl;
  std::optional<std::string> installId;
  Transport transport;

  // The match list: GET api/matches.
  Task<FeedResult<MatchesResponse>> matches() const;

  // One match: GET api/match?id=…
  Task<FeedResult<MatchResponse>> match(std::string_view id) const;

  // Key events of a match, those newer than `since` when it is given: GET
  // api/pro/match?id=…&since=…
  Task<FeedResult<ProMatchResult>> keyEvents(std::string_view id,
                                             std::optional<std::int64_t> since) const;

  // Tells the service about this installation: POST api/install with the header x-install-id. Does
  // nothing without an install id, or with one that a header can't hold; every failure is ignored.
  Task<void> reportInstall() const;

  // Decodes a whole answer: MatchesResponse, MatchResponse or ProMatchPayload.
  template <class T>
  static std::expected<T, ScoreClientError> decode(std::string_view body);
};

}  // namespace kestrow
