// A server that writes exactly the bytes that a test wants, when it wants them.
#pragma once

#include "Tests/Support/TlsIdentity.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kestrow {

// Listens on a free port of the loopback interface, and runs the script for each connection on a
// thread of its own. Destroying the server ends all connections; their scripts' waits end early.
class RawHttpServer {
 public:
  // The server's end of one connection; it is closed when the script returns.
  class Connection {
   public:
    Connection(RawHttpServer& server, int socket);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    // The next request, its body too (by its Content-Length); empty when the client has closed.
    std::string readRequest();

    // False when the client has gone.
    bool write(std::string_view bytes);

    // Waits, for less long when the client closes; false in that case.
    bool pause(std::chrono::milliseconds time);

    // Waits until the client closes.
    void awaitClose();

    // Closes by a reset (RST) rather than an orderly end.
    void reset();

   private:
    friend RawHttpServer;
    struct Tls;

    bool handshake();
    std::string receive();

    RawHttpServer& server_;
    int socket_;
    std::unique_ptr<Tls> tls_;
    std::string received_;  // not yet part of a request
  };

  using Script = std::function<void(Connection&)>;

  explicit RawHttpServer(Script script, std::optional<TlsIdentity> identity = std::nullopt);
  RawHttpServer(const RawHttpServer&) = delete;
  RawHttpServer& operator=(const RawHttpServer&) = delete;
  ~RawHttpServer();

  // "http://127.0.0.1:1234" and the path; with an identity, https.
  std::string url(std::string_view path = "/") const;

  // What was asked so far.
  std::vector<std::string> requests() const;
  int connectionCount() const { return connectionCount_; }

  // Waits until so many requests have come, or connections have closed; false when that takes more
  // than twenty seconds.
  bool awaitRequests(std::size_t count) const;
  bool awaitClosed(int count) const;

 private:
  struct TlsContext;

  void wakeAcceptor() const;
  void accept();
  void serve(int socket);

  Script script_;
  std::unique_ptr<TlsContext> tls_;
  int listener_ = -1;
  std::uint16_t port_ = 0;
  std::atomic<int> connectionCount_ = 0;
  std::atomic<bool> isEnding_ = false;
  mutable std::mutex mutex_;  // of the following
  mutable std::condition_variable changed_;
  int closedCount_ = 0;
  std::vector<std::string> requests_;
  std::list<int> sockets_;
  std::list<std::thread> threads_;
  std::thread acceptor_;
};

// An answer with a Content-Length. `headers` are whole lines, each with its line end.
std::string httpAnswer(std::string_view body, std::string_view status = "200 OK",
                       std::string_view headers = "");

// A script that answers every request of the connection with the same.
RawHttpServer::Script answering(std::string answer);

// The bytes compressed, in gzip's format.
std::string gzipped(std::string_view bytes);

}  // namespace kestrow
