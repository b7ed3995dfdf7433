// Faults that the service commits on request, so that a client's handling of them can be seen.
#pragma once

#include "KestrowCore/MainThread.hpp"

#include <atomic>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrow::service {

struct Fault {
  enum class Kind {
    latency,   // the answer comes `seconds` late
    status,    // another `status`, with a body that says so where it may have one
    drop,      // the connection is closed without a byte of an answer
    truncate,  // the connection is closed after half of the body
    garbage,   // a body that is not JSON
    oversize,  // a body of `bytes` bytes
    drip,      // the body comes in pieces of 16 bytes, `seconds` apart
    redirect,  // a 302 to `location`
  };
  enum class When {
    always,
    every,  // each request whose number is a multiple of `count`
    first,  // the first `count` requests
    after,  // all but the first `count` requests
    rate,   // each request with the probability `rate`, the same ones for the same seed
  };
  Kind kind = Kind::latency;
  double seconds = 0;
  int status = 0;
  std::int64_t bytes = 0;
  std::string location;
  When when = When::always;
  std::int64_t count = 0;
  double rate = 0;
  std::string path;  // such as "/api/matches"; empty means every path
  bool operator==(const Fault&) const = default;
};

// Reads "KIND[=VALUE][@WHEN][@PATH]", for example "status=503@every:3@/api/matches". Fails with one
// line.
std::expected<Fault, std::string> parseFault(std::string_view text);

// Which faults a request meets. Any thread may ask. Each fault counts the requests of its own path.
class FaultPlan {
 public:
  struct Choice {
    Seconds latency{0};
    std::optional<Fault> fault;  // never a latency
  };

  FaultPlan(std::vector<Fault> faults, std::uint64_t seed);

  // Counts a request. Latencies add up; of the other faults the first that is due is chosen.
  Choice next(std::string_view path);

 private:
  std::vector<Fault> faults_;
  std::unique_ptr<std::atomic<std::int64_t>[]> counts_;
  std::uint64_t seed_;
};

}  // namespace kestrow::service
