// What a request and its answer are to the core, whatever carries them.
#pragma once

#include "KestrowCore/Task.hpp"

#include <chrono>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {

enum class HttpMethod { get, post };

struct HttpRequest {
  HttpMethod method = HttpMethod::get;
  std::string url;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;
  // For the whole request, from its start to the last byte of the answer.
  std::chrono::milliseconds timeout = std::chrono::seconds(20);
  bool operator==(const HttpRequest&) const = default;
};

// Why a request must not be sent, if so: control characters in its URL or headers, or a header name
// that is none, with which text from outside could smuggle in a header or a second request.
std::optional<std::string> defect(const HttpRequest& request);

struct HttpResponse {
  std::string body;
  int status = 0;  // 0 when the answer was not an HTTP one
  bool operator==(const HttpResponse&) const = default;
};

// The request got no answer: no network, a time-out, a broken or refused answer, or its cancelling.
struct TransportError {
  std::string description;
  bool operator==(const TransportError&) const = default;
};

// Sends a request and gives its answer, on the main thread.
using Transport = std::function<Task<std::expected<HttpResponse, TransportError>>(HttpRequest)>;

}  // namespace kestrow
