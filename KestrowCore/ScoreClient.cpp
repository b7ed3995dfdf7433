#include "KestrowCore/ScoreClient.hpp"

#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"

#include <utility>

namespace kestrow {

namespace {

bool isSuccess(int status) {
  return status >= 200 && status <= 299;
}
constexpr int statusOk = 200;
constexpr int statusNotFound = 404;

std::unexpected<FeedError> httpError(int status) {
  return std::unexpected<FeedError>(ScoreClientError{ScoreClientError::Http{.status = status}});
}

// The path below the base URL, whether that ends in a slash or not.
std::string endpoint(const std::string& baseUrl, std::string_view path) {
  auto url = baseUrl;
  if (!url.ends_with('/')) url += '/';
  return url.append(path);
}

// A query value with everything but the unreserved characters of a URL as its bytes' escapes.
std::string escaped(std::string_view value) {
  constexpr std::string_view unreserved =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr std::string_view hexDigits = "0123456789ABCDEF";
  std::string out;
  for (const char c : value) {
    if (unreserved.contains(c)) {
      out += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    out += '%';
    out += hexDigits[byte >> 4U];
    out += hexDigits[byte & 0xFU];
  }
  return out;
}

HttpRequest getRequest(std::string url) {
  return {.method = HttpMethod::get, .url = std::move(url), .headers = {}, .body = {}};
}

template <class T>
FeedResult<T> decoded(std::string_view body) {
  auto result = ScoreClient::decode<T>(body);
  if (!result) return std::unexpected<FeedError>(std::move(result.error()));
  return *std::move(result);
}

// These take what they need by value: a suspended request outlives the client that began it.
template <class T>
Task<FeedResult<T>> fetch(Transport transport, HttpRequest request) {
  auto sending = transport(std::move(request));
  const auto answer = co_await sending;
  if (!answer) co_return std::unexpected<FeedError>(answer.error());
  if (!isSuccess(answer->status)) co_return httpError(answer->status);
  co_return decoded<T>(answer->body);
}

Task<FeedResult<ProMatchResult>> fetchKeyEvents(Transport transport, HttpRequest request) {
  auto sending = transport(std::move(request));
  const auto answer = co_await sending;
  if (!answer) co_return std::unexpected<FeedError>(answer.error());
  if (answer->status == statusNotFound) co_return ProMatchResult(NotFound{});
  if (answer->status != statusOk) co_return httpError(answer->status);
  co_return decoded<ProMatchPayload>(answer->body);
}

Task<void> send(Transport transport, std::optional<HttpRequest> request) {
  // The id comes from a file that anyone may have edited.
  if (!request || defect(*request)) co_return;
  auto sending = transport(*std::move(request));
  (void)co_await sending;
}

}  // namespace

const std::string ScoreClient::defaultBaseUrl = KESTROW_BASE_URL;

Task<FeedResult<MatchesResponse>> ScoreClient::matches() const {
  return fetch<MatchesResponse>(transport, getRequest(endpoint(baseUrl, "api/matches")));
}

Task<FeedResult<MatchResponse>> ScoreClient::match(std::string_view id) const {
  return fetch<MatchResponse>(transport,
                              getRequest(endpoint(baseUrl, "api/match") + "?id=" + escaped(id)));
}

Task<FeedResult<ProMatchResult>> ScoreClient::keyEvents(std::string_view id,
                                                        std::optional<std::int64_t> since) const {
  auto url = endpoint(baseUrl, "api/pro/match") + "?id=" + escaped(id);
  if (since) url += "&since=" + std::to_string(*since);
  return fetchKeyEvents(transport, getRequest(std::move(url)));
}

Task<void> ScoreClient::reportInstall() const {
  std::optional<HttpRequest> request;
  if (installId) {
    request = HttpRequest{.method = HttpMethod::post,
                          .url = endpoint(baseUrl, "api/install"),
                          .headers = {{"x-install-id", *installId}},
                          .body = {}};
  }
  return send(transport, std::move(request));
}

template <class T>
std::expected<T, ScoreClientError> ScoreClient::decode(std::string_view body) {
  auto result = json::decode<T>(body);
  if (result) return *std::move(result);
  return std::unexpected(
      ScoreClientError{ScoreClientError::Decoding{.description = result.error().description()}});
}

template std::expected<MatchesResponse, ScoreClientError> ScoreClient::decode<MatchesResponse>(
    std::string_view);
template std::expected<MatchResponse, ScoreClientError> ScoreClient::decode<MatchResponse>(
    std::string_view);
template std::expected<ProMatchPayload, ScoreClientError> ScoreClient::decode<ProMatchPayload>(
    std::string_view);

}  // namespace kestrow
