// The real HTTP transport. The only file family that includes curl.
#pragma once

#include "KestrowCore/Http.hpp"
#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/Task.hpp"

#include <cstddef>
#include <expected>
#include <memory>
#include <string>

namespace kestrow {

// Sends HTTP requests, any number at once, on one network thread that starts with the first of them
// and sleeps while there is nothing to do. Answers reach the main thread in the order in which they
// are complete.
//
// Servers are not trusted: certificates are verified, sizes are bounded, redirects lead to http and
// https only, at most ten, and never back from https to http. Compressed answers are unpacked,
// connections kept for the next request; there are no cookies and no cache. What a server did wrong
// is a TransportError.
//
// Main thread only. The main thread's loop must outlive the session.
class UrlSession {
 public:
  struct Options {
    // Of one answer, unpacked. A thousand matches take an eighth of it, and it is read so quickly
    // that nobody has to wait for the main thread.
    std::size_t maxBodyBytes = std::size_t{4} << 20U;
    std::size_t maxHeaderBytes = std::size_t{256} << 10U;  // of one request's answers together
    std::string certificateFile;  // authorities to trust, as PEM, in place of the system's
    std::string libraryFile;      // libcurl, in place of the system's
  };

  explicit UrlSession(MainThread& mainThread);
  UrlSession(MainThread& mainThread, Options options);
  UrlSession(const UrlSession&) = delete;
  UrlSession& operator=(const UrlSession&) = delete;

  // Ends the requests under way; their tasks soon get a TransportError.
  ~UrlSession();

  // Sends the request once the task is awaited. Destroying the task cancels the request. Fails
  // without sending when the URL or a header holds characters that don't belong there.
  Task<std::expected<HttpResponse, TransportError>> send(HttpRequest request);

  // Called before the first request, keeps requests, and the network thread, waiting until
  // release(). Loading libcurl beside a main thread that starts a program slows both.
  void hold();
  void release();

 private:
  class Transfer;
  class Network;
  class State;

  // Holds the state rather than the session, which may go while the task waits.
  static Task<std::expected<HttpResponse, TransportError>> sendWith(std::shared_ptr<State> state,
                                                                    HttpRequest request);

  std::shared_ptr<State> state_;
};

// The session as a transport, which keeps it alive.
Transport urlSessionTransport(std::shared_ptr<UrlSession> session);

}  // namespace kestrow
