// Serves a feed over HTTP.
#pragma once

#include "KestrowCore/Date.hpp"
#include "ScoreService/Faults.hpp"
#include "ScoreService/MatchFeed.hpp"

#include <cstdint>
#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace kestrow::service {

struct ServerSettings {
  std::string address = "127.0.0.1";
  int port = 0;  // 0 takes any free one
  std::vector<Fault> faults;
  std::uint64_t seed = 1;  // decides which requests a fault with a rate meets
};

// Listens from start() on, on threads of its own, until stop() or its end. The feed and `now` are
// asked on those threads.
class ScoreServer {
 public:
  // Fails with one line when the address can't be listened on.
  static std::expected<std::unique_ptr<ScoreServer>, std::string> start(MatchFeed feed, Now now,
                                                                        ServerSettings settings);
  ScoreServer(const ScoreServer&) = delete;
  ScoreServer& operator=(const ScoreServer&) = delete;
  ~ScoreServer();

  int port() const;         // the real one
  std::string url() const;  // "http://127.0.0.1:8787"

  // Requests that were answered or met a fault, and installations that were reported.
  std::int64_t requestCount() const;
  std::int64_t installCount() const;

  // Takes no more requests; returns when those under way have ended.
  void stop();

 private:
  class Running;
  explicit ScoreServer(std::unique_ptr<Running> running);
  std::unique_ptr<Running> running_;
};

}  // namespace kestrow::service
