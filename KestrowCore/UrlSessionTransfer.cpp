#include "KestrowCore/UrlSessionTransfer.hpp"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

namespace kestrow {

UrlSession::Transfer::Transfer(const Curl& curl, Id id, HttpRequest request, const Options& options)
    : curl_(curl),
      id_(id),
      request_(std::move(request)),
      options_(options),
      headers_(nullptr, curl.slistFreeAll),
      easy_(curl.easyInit(), curl.easyCleanup) {
  setUpSafety();
  setUpRequest();
  setUpCallbacks();
}

std::expected<HttpResponse, TransportError> UrlSession::Transfer::result(CURLcode code) {
  if (code != CURLE_OK) return std::unexpected(TransportError{describe(code)});
  long status = 0;
  curl_.easyGetinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  // To libcurl an answer that breaks off in its headers is one without a body.
  if (!hasHeaders_ || status < 200) {
    return std::unexpected(TransportError{"The answer broke off in its headers"});
  }
  return HttpResponse{.body = std::move(body_), .status = static_cast<int>(status)};
}

template <class T>
void UrlSession::Transfer::set(CURLoption option, T value) {
  const CURLcode code = curl_.easySetopt(handle(), option, value);
  if (setUp_ == CURLE_OK) setUp_ = code;
}

void UrlSession::Transfer::setUpSafety() {
  set(CURLOPT_NOSIGNAL, 1L);
  // A name that is being looked up is left to itself; waiting for it would block all requests.
  set(CURLOPT_QUICK_EXIT, 1L);
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 1L);
  set(CURLOPT_MAXREDIRS, 10L);
  set(CURLOPT_HTTP09_ALLOWED, 0L);
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  if (!options_.certificateFile.empty()) {
    set(CURLOPT_CAINFO, options_.certificateFile.c_str());
    set(CURLOPT_CAPATH, nullptr);
  }
  // Refuses by the announced length; what really comes is counted as it comes.
  set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(options_.maxBodyBytes));
}

void UrlSession::Transfer::setUpRequest() {
  constexpr std::chrono::milliseconds longest = std::chrono::hours(24);
  const auto timeout = std::clamp(request_.timeout, std::chrono::milliseconds(1), longest);
  set(CURLOPT_URL, request_.url.c_str());
  set(CURLOPT_TIMEOUT_MS, static_cast<long>(timeout.count()));
  set(CURLOPT_USERAGENT, "Kestrow/" KESTROW_VERSION);
  set(CURLOPT_ACCEPT_ENCODING, "");  // every compression that libcurl can unpack
  if (request_.method == HttpMethod::post) {
    set(CURLOPT_POST, 1L);
    set(CURLOPT_POSTFIELDS, request_.body.c_str());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
    // Without these libcurl calls the body a form, and asks before it sends a long one.
    addHeader("Content-Type", ":");
    addHeader("Expect", ":");
  }
  for (const auto& [name, value] : request_.headers) {
    addHeader(name, value.empty() ? ";" : ": " + value);
  }
  set(CURLOPT_HTTPHEADER, headers_.get());
}

void UrlSession::Transfer::setUpCallbacks() {
  set(CURLOPT_PRIVATE, this);
  set(CURLOPT_ERRORBUFFER, error_.data());
  set(CURLOPT_WRITEFUNCTION, &Transfer::onBody);
  set(CURLOPT_WRITEDATA, this);
  set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
  set(CURLOPT_HEADERDATA, this);
  set(CURLOPT_PREREQFUNCTION, &Transfer::onConnected);
  set(CURLOPT_PREREQDATA, this);
}

// To libcurl "Name:" says to leave a header out, "Name;" to send it empty.
void UrlSession::Transfer::addHeader(const std::string& name, const std::string& rest) {
  headers_.reset(curl_.slistAppend(headers_.release(), (name + rest).c_str()));
  if (!headers_) setUp_ = CURLE_OUT_OF_MEMORY;
}

std::string UrlSession::Transfer::describe(CURLcode code) const {
  if (!refusal_.empty()) return refusal_;
  return error_[0] == '\0' ? curl_.easyStrerror(code) : error_.data();
}

// The body as it comes, unpacked. Taking less than was given ends the transfer.
std::size_t UrlSession::Transfer::onBody(const char* bytes, std::size_t /*one*/, std::size_t count,
                                         void* self) {
  auto& transfer = *static_cast<Transfer*>(self);
  if (count > transfer.options_.maxBodyBytes - transfer.body_.size()) {
    transfer.refusal_ = "The answer's body is too long";
    return CURL_WRITEFUNC_ERROR;
  }
  transfer.body_.append(bytes, count);
  return count;
}

// Called for each header line of every answer: interim ones, redirects and trailers too.
std::size_t UrlSession::Transfer::onHeader(const char* bytes, std::size_t /*one*/,
                                           std::size_t count, void* self) {
  auto& transfer = *static_cast<Transfer*>(self);
  if (count > transfer.options_.maxHeaderBytes - transfer.headerBytes_) {
    transfer.refusal_ = "The answer's headers are too long";
    return CURL_WRITEFUNC_ERROR;
  }
  transfer.headerBytes_ += count;
  const std::string_view line(bytes, count);
  if (line.starts_with("HTTP/")) transfer.hasHeaders_ = false;
  if (line == "\r\n" || line == "\n") transfer.hasHeaders_ = true;
  return count;
}

// Called before anything is sent to a server, the first one and those of redirects.
int UrlSession::Transfer::onConnected(void* self, char* /*address*/, char* /*ownAddress*/,
                                      int /*port*/, int /*ownPort*/) {
  auto& transfer = *static_cast<Transfer*>(self);
  const char* url = "";
  transfer.curl_.easyGetinfo(transfer.handle(), CURLINFO_EFFECTIVE_URL, &url);
  const bool isSecure = transfer.curl_.strnequal(url, "https:", 6) != 0;
  if (transfer.isSecure_ && !isSecure) {
    transfer.refusal_ = "A redirect from https to http was refused";
    return CURL_PREREQFUNC_ABORT;
  }
  transfer.isSecure_ = isSecure;
  return CURL_PREREQFUNC_OK;
}

}  // namespace kestrow
