// One HTTP request of a UrlSession as libcurl carries it. Included by UrlSession.cpp alone.
#pragma once

#include "KestrowCore/Http.hpp"
#include "KestrowCore/UrlSession.hpp"
#include "KestrowCore/UrlSessionCurl.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <string>

namespace kestrow {

// One request and what has come of its answer. Network thread only.
class UrlSession::Transfer {
 public:
  using Id = std::uint64_t;

  // The library and the options must outlive the transfer.
  Transfer(const Curl& curl, Id id, HttpRequest request, const Options& options);
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  Id id() const { return id_; }
  CURL* handle() const { return easy_.get(); }
  // What became of setting it up; anything but CURLE_OK must not be sent.
  CURLcode setUp() const { return setUp_; }

  // The answer, once libcurl says with `code` that the transfer is over. Asked once.
  std::expected<HttpResponse, TransportError> result(CURLcode code);

 private:
  template <class T>
  void set(CURLoption option, T value);
  void setUpSafety();
  void setUpRequest();
  void setUpCallbacks();
  void addHeader(const std::string& name, const std::string& rest);
  std::string describe(CURLcode code) const;

  static std::size_t onBody(const char* bytes, std::size_t one, std::size_t count, void* self);
  static std::size_t onHeader(const char* bytes, std::size_t one, std::size_t count, void* self);
  static int onConnected(void* self, char* address, char* ownAddress, int port, int ownPort);

  const Curl& curl_;
  Id id_;
  HttpRequest request_;
  const Options& options_;
  std::string body_;
  std::size_t headerBytes_ = 0;
  bool hasHeaders_ = false;  // those of the answer last begun are whole
  bool isSecure_ = false;    // the server asked last was one of https
  std::string refusal_;      // why we ended it ourselves
  std::array<char, CURL_ERROR_SIZE> error_{};
  CURLcode setUp_ = CURLE_OK;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy_;
};

}  // namespace kestrow
