// HTTP answers: the input is what a server says, byte for byte, to the real client. Its first byte
// tells how it is sent: whole or in pieces, with an orderly end or a reset.
#include "Fuzzers/Fuzzer.hpp"
#include "Fuzzers/Shown.hpp"
#include "KestrowCore/RunLoop.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/UrlSession.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace {

using kestrow::fuzz::require;
using List = kestrow::FeedResult<kestrow::MatchesResponse>;

// Says the same to every connection, one after the other, for the life of the process.
class Server {
 public:
  Server() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    const bool isListening = ::bind(listener_, generic, size) == 0 &&
                             ::listen(listener_, 64) == 0 &&
                             ::getsockname(listener_, generic, &size) == 0;
    require(isListening, "the server listens");
    url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    std::thread([this] {
      while (true) serve(::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
    }).detach();
  }

  const std::string& url() const { return url_; }

  void say(std::string_view input) {
    const std::lock_guard lock(mutex_);
    manner_ = input.empty() ? 0U : static_cast<unsigned char>(input.front());
    answer_ = input.substr(input.empty() ? 0 : 1);
  }

 private:
  void serve(int socket) {
    std::string answer;
    unsigned manner = 0;
    readRequest(socket);
    {
      const std::lock_guard lock(mutex_);
      answer = answer_;
      manner = manner_;
    }
    constexpr unsigned inPieces = 1;
    constexpr unsigned byReset = 2;
    const std::size_t piece = (manner & inPieces) != 0 ? answer.size() / 3 + 1 : answer.size() + 1;
    for (std::size_t at = 0; at < answer.size(); at += piece) {
      const std::string_view part = std::string_view(answer).substr(at, piece);
      if (::send(socket, part.data(), part.size(), MSG_NOSIGNAL) < 0) break;
    }
    const linger end{.l_onoff = 1, .l_linger = 0};
    if ((manner & byReset) != 0) ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &end, sizeof(end));
    ::close(socket);
  }

  static void readRequest(int socket) {
    std::string request;
    std::array<char, 4096> block{};
    while (!request.contains("\r\n\r\n")) {
      const auto count = ::recv(socket, block.data(), block.size(), 0);
      if (count <= 0) return;
      request.append(block.data(), static_cast<std::size_t>(count));
    }
  }

  int listener_;
  std::string url_;
  std::mutex mutex_;  // of the following
  std::string answer_;
  unsigned manner_ = 0;
};

// Where redirects lead away from this machine, the server stands in as a proxy: no input makes the
// program ask anybody else.
Server& loneServer() {
  static Server* const server = [] {
    auto* const made = new Server;  // its thread runs to the end of the process
    for (const char* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy"}) {
      ::setenv(name, made->url().c_str(), 1);
    }
    ::setenv("no_proxy", "127.0.0.1", 1);
    return made;
  }();
  return *server;
}

kestrow::Task<void> keep(kestrow::Task<List> task, std::optional<List>& out) {
  List list = co_await task;
  out.emplace(std::move(list));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Server& server = loneServer();
  static kestrow::RunLoop loop;
  // Never ended: its thread would outlive the TLS library, which cleans up on exit before the
  // statics go.
  static const auto& session = *new auto(std::make_shared<kestrow::UrlSession>(loop));
  server.say(kestrow::fuzz::textOf(data, size));
  const kestrow::ScoreClient client{.baseUrl = server.url(),
                                    .transport = kestrow::urlSessionTransport(session)};
  std::optional<List> list;
  kestrow::TaskScope scope;
  scope.start(keep(client.matches(), list));
  constexpr kestrow::Seconds patience{25};  // beyond the client's own
  loop.runUntil([&] { return list.has_value(); }, patience);
  require(list.has_value(), "every answer, and none, comes to an end");
  if (*list) kestrow::fuzz::show(**list);
  return 0;
}
