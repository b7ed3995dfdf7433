// A transport whose answers the test holds back and gives when it likes.
#pragma once

#include "KestrowCore/Http.hpp"
#include "KestrowCore/Task.hpp"

#include <algorithm>
#include <cstddef>
#include <expected>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrow {

class HeldTransport {
 public:
  using Answer = std::expected<HttpResponse, TransportError>;

  // Must not outlive this object.
  Transport transport() {
    return [this](HttpRequest request) { return send(std::move(request)); };
  }

  // Every request so far whose URL holds the text.
  std::vector<HttpRequest> requests(std::string_view part) const {
    std::vector<HttpRequest> found;
    for (const auto& exchange : exchanges_) {
      if (holds(exchange, part)) found.push_back(exchange.request);
    }
    return found;
  }

  // How many of them still wait for their answer.
  std::size_t waiting(std::string_view part) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        exchanges_, [&](const auto& e) { return holds(e, part) && !e.isAnswered; }));
  }

  // Answers the oldest waiting request whose URL holds the text; false when none waits.
  bool answer(std::string_view part, Answer answer) {
    for (auto& exchange : exchanges_) {
      if (!holds(exchange, part) || exchange.isAnswered) continue;
      exchange.isAnswered = true;
      exchange.pending.complete(std::move(answer));
      return true;
    }
    return false;
  }
  bool answer(std::string_view part, std::string body) {
    return answer(part, HttpResponse{.body = std::move(body), .status = 200});
  }
  bool fail(std::string_view part) {
    return answer(part, std::unexpected(TransportError{"no network"}));
  }

 private:
  struct Exchange {
    HttpRequest request;
    Pending<Answer> pending;
    bool isAnswered = false;
  };

  static bool holds(const Exchange& exchange, std::string_view part) {
    return exchange.request.url.find(part) != std::string::npos;
  }

  Task<Answer> send(HttpRequest request) {
    exchanges_.push_back({.request = std::move(request), .pending = {}});
    return exchanges_.back().pending.task();
  }

  std::list<Exchange> exchanges_;
};

}  // namespace kestrow
