// What tests of the HTTP transport have in common.
#pragma once

#include "KestrowCore/Http.hpp"
#include "KestrowCore/RunLoop.hpp"
#include "KestrowCore/Task.hpp"
#include "KestrowCore/UrlSession.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {

// A session on a loop that runs while a test waits.
class UrlSessionFixture : public testing::Test {
 protected:
  using Result = std::expected<HttpResponse, TransportError>;

  // Far more than any of these tests takes: it only ends a test that hangs.
  static constexpr Seconds patience{20};

  UrlSessionFixture() {
    // A proxy of the machine has no way to servers of the test.
    for (const char* variable :
         {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"}) {
      ::unsetenv(variable);
    }
    renewSession();
  }

  RunLoop& loop() { return loop_; }
  UrlSession& session() { return *session_; }
  void endSession() { session_.reset(); }
  void renewSession(UrlSession::Options options = {}) {
    session_ = std::make_unique<UrlSession>(loop_, std::move(options));
  }

  // Runs the loop until the task has given its answer.
  Result await(Task<Result> task) {
    std::optional<Result> result;
    TaskScope scope;
    scope.start(keep(std::move(task), result));
    loop_.runUntil([&] { return result.has_value(); }, patience);
    return result.value_or(std::unexpected(TransportError{"the test's patience is at its end"}));
  }
  Result fetch(HttpRequest request) { return await(session_->send(std::move(request))); }
  Result fetch(std::string url) { return fetch(HttpRequest{.url = std::move(url)}); }

  static Task<void> keep(Task<Result> task, std::optional<Result>& out,
                         std::function<void()> then = {}) {
    Result result = co_await task;
    out.emplace(std::move(result));
    if (then) then();
  }

  static Task<void> appendBody(Task<Result> task, std::vector<std::string>& out) {
    const Result result = co_await task;
    out.push_back(result ? result->body : result.error().description);
  }

 private:
  RunLoop loop_;
  std::unique_ptr<UrlSession> session_;
};

}  // namespace kestrow
