#include "ScoreService/ScoreServer.hpp"

#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/JsonRecord.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "ScoreService/Connection.hpp"
#include "ScoreService/Text.hpp"

#include <httplib.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

namespace kestrow::service {
namespace {

constexpr const char* jsonType = "application/json";
constexpr std::size_t maxBody = 64U << 10U;  // nothing that a client has to say is longer
constexpr std::size_t dripPiece = 16;
// A connection is kept for one request after the other, and holds one of these threads meanwhile.
constexpr std::size_t threadCount = 32;
constexpr std::size_t requestsOfConnection = 1'000'000'000;
constexpr std::chrono::seconds keptIdle{1};
constexpr int waitingConnections = 512;

struct Problem {
  std::string error;
};

}  // namespace
}  // namespace kestrow::service

template <>
struct kestrow::json::Record<kestrow::service::Problem> {
  static auto fields(auto& problem) { return std::tuple(required("error", problem.error)); }
};

namespace kestrow::service {
namespace {

void answer(httplib::Response& response, const std::string& body) {
  response.set_content(body, jsonType);
}

void refuse(httplib::Response& response, int status, std::string why) {
  response.status = status;
  answer(response, json::encodeReplacing(Problem{std::move(why)}));
}

// The library's own queue of waiting connections is so short that a burst of clients would be
// turned away.
class HttpServer : public httplib::Server {
 public:
  void allowManyWaiting() { ::listen(svr_sock_, waitingConnections); }
};

}  // namespace

class ScoreServer::Running {
 public:
  Running(MatchFeed feed, Now now, ServerSettings settings)
      : feed_(std::move(feed)),
        now_(std::move(now)),
        address_(std::move(settings.address)),
        faults_(std::move(settings.faults), settings.seed) {
    route();
    // Only an address left over from a connection that has ended may be taken again: another
    // server's port may not.
    http_.set_socket_options([](socket_t socket) {
      const int yes = 1;
      setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    http_.set_tcp_nodelay(true);
    http_.set_payload_max_length(maxBody);
    http_.set_keep_alive_max_count(requestsOfConnection);
    http_.set_keep_alive_timeout(keptIdle.count());
    http_.new_task_queue = [] { return new httplib::ThreadPool(threadCount); };
  }

  std::expected<void, std::string> listen(int port) {
    errno = 0;
    port_ = port == 0                            ? http_.bind_to_any_port(address_)
            : http_.bind_to_port(address_, port) ? port
                                                 : -1;
    if (port_ < 0) {
      const std::string why =
          errno != 0 ? std::system_category().message(errno) : "no such address";
      return std::unexpected("can't listen on " + address_ + ":" + std::to_string(port) + ": " +
                             why);
    }
    http_.allowManyWaiting();
    thread_ = std::thread([this] { http_.listen_after_bind(); });
    // Until its loop runs, the library would not notice being stopped.
    while (!http_.is_running()) std::this_thread::yield();
    return {};
  }

  void stop() {
    if (!thread_.joinable()) return;
    {
      const std::scoped_lock lock(mutex_);
      isStopping_ = true;
    }
    stopping_.notify_all();
    http_.stop();
    thread_.join();
  }

  int port() const { return port_; }
  const std::string& address() const { return address_; }
  std::int64_t requestCount() const { return requests_; }
  std::int64_t installCount() const { return installs_; }

 private:
  using Handler = void (Running::*)(const httplib::Request&, httplib::Response&);

  void route() {
    const auto handle = [this](Handler handler) {
      return [this, handler](const httplib::Request& request, httplib::Response& response) {
        serve(handler, request, response);
      };
    };
    http_.Get("/api/matches", handle(&Running::matches));
    http_.Get("/api/match", handle(&Running::match));
    http_.Get("/api/pro/match", handle(&Running::keyEvents));
    http_.Post("/api/install", handle(&Running::install));
    http_.set_error_handler([](const httplib::Request&, httplib::Response& response) {
      if (response.body.empty()) refuse(response, response.status, "there is nothing here");
    });
  }

  void matches(const httplib::Request& /*request*/, httplib::Response& response) {
    answer(response, encode(feed_.matches(now_())));
  }

  void match(const httplib::Request& request, httplib::Response& response) {
    if (!request.has_param("id")) return refuse(response, 400, "id is missing");
    answer(response, encode(feed_.match(request.get_param_value("id"), now_())));
  }

  void keyEvents(const httplib::Request& request, httplib::Response& response) {
    if (!request.has_param("id")) return refuse(response, 400, "id is missing");
    std::optional<std::int64_t> since;
    if (request.has_param("since")) {
      since = wholeNumber(request.get_param_value("since"));
      if (!since) return refuse(response, 400, "since is not a whole number");
    }
    const auto payload = feed_.keyEvents(request.get_param_value("id"), since, now_());
    if (!payload) return refuse(response, 404, "no match has this id");
    answer(response, encode(*payload));
  }

  void install(const httplib::Request& request, httplib::Response& response) {
    if (request.get_header_value("x-install-id").empty()) {
      return refuse(response, 400, "x-install-id is missing");
    }
    ++installs_;
    response.status = 204;
  }

  void serve(Handler handler, const httplib::Request& request, httplib::Response& response) {
    ++requests_;
    const FaultPlan::Choice choice = faults_.next(request.path);
    if (choice.latency > Seconds(0)) waitUnlessStopping(choice.latency);
    (this->*handler)(request, response);
    if (choice.fault) commit(*choice.fault, request, response);
  }

  void commit(const Fault& fault, const httplib::Request& request, httplib::Response& response) {
    switch (fault.kind) {
      case Fault::Kind::status:
        return misreport(response, fault.status);
      case Fault::Kind::redirect:
        response.body.clear();
        return response.set_redirect(fault.location);
      case Fault::Kind::garbage:
        return response.set_content(std::string("\0\xff{]<garbage>", 13), jsonType);
      case Fault::Kind::drop:
        return cutConnection(request.local_port, request.remote_port);
      case Fault::Kind::truncate:
        return truncate(response);
      case Fault::Kind::oversize:
        return oversize(response, static_cast<std::size_t>(fault.bytes));
      case Fault::Kind::drip:
        return drip(response, Seconds(fault.seconds));
      case Fault::Kind::latency:
        return;
    }
  }

  // A body behind a status that has none would be read as the start of the next answer.
  static void misreport(httplib::Response& response, int status) {
    constexpr int noContent = 204;
    constexpr int notModified = 304;
    if (status != noContent && status != notModified) {
      return refuse(response, status, "a fault was asked for");
    }
    response.status = status;
    response.body.clear();
  }

  static void truncate(httplib::Response& response) {
    auto body = std::exchange(response.body, {});
    const std::size_t size = body.size();
    response.set_content_provider(
        size, jsonType, [body = std::move(body)](std::size_t offset, std::size_t, auto& sink) {
          // Giving up part of the way makes the library close the connection.
          return offset == 0 && sink.write(body.data(), body.size() / 2);
        });
  }

  // An empty list with very many spaces in it: good JSON, if anyone reads that far.
  static void oversize(httplib::Response& response, std::size_t size) {
    response.body.clear();
    response.set_content_provider(size, jsonType,
                                  [size](std::size_t offset, std::size_t length, auto& sink) {
                                    constexpr std::size_t pieceSize = 64U << 10U;
                                    std::string piece(std::min(length, pieceSize), ' ');
                                    if (offset == 0) piece.front() = '{';
                                    if (offset + piece.size() == size) piece.back() = '}';
                                    return sink.write(piece.data(), piece.size());
                                  });
  }

  void drip(httplib::Response& response, Seconds pause) {
    auto body = std::exchange(response.body, {});
    const std::size_t size = body.size();
    response.set_content_provider(
        size, jsonType,
        [this, pause, body = std::move(body)](std::size_t offset, std::size_t length, auto& sink) {
          if (offset > 0 && !waitUnlessStopping(pause)) return false;
          return sink.write(body.data() + offset, std::min(length, dripPiece));
        });
  }

  // False when the server is stopping.
  bool waitUnlessStopping(Seconds length) {
    std::unique_lock lock(mutex_);
    return !stopping_.wait_for(lock, length, [this] { return isStopping_; });
  }

  MatchFeed feed_;
  Now now_;
  std::string address_;
  FaultPlan faults_;
  HttpServer http_;
  int port_ = -1;
  std::atomic<std::int64_t> requests_ = 0;
  std::atomic<std::int64_t> installs_ = 0;
  std::mutex mutex_;
  std::condition_variable stopping_;
  bool isStopping_ = false;
  std::thread thread_;
};

ScoreServer::ScoreServer(std::unique_ptr<Running> running) : running_(std::move(running)) {}

ScoreServer::~ScoreServer() {
  stop();
}

std::expected<std::unique_ptr<ScoreServer>, std::string> ScoreServer::start(
    MatchFeed feed, Now now, ServerSettings settings) {
  const int port = settings.port;
  auto running = std::make_unique<Running>(std::move(feed), std::move(now), std::move(settings));
  if (const auto listening = running->listen(port); !listening) {
    return std::unexpected(listening.error());
  }
  return std::unique_ptr<ScoreServer>(new ScoreServer(std::move(running)));
}

int ScoreServer::port() const {
  return running_->port();
}

std::string ScoreServer::url() const {
  const std::string& address = running_->address();
  const bool isIpv6 = address.find(':') != std::string::npos;
  return "http://" + (isIpv6 ? "[" + address + "]" : address) + ":" + std::to_string(port());
}

std::int64_t ScoreServer::requestCount() const {
  return running_->requestCount();
}

std::int64_t ScoreServer::installCount() const {
  return running_->installCount();
}

void ScoreServer::stop() {
  running_->stop();
}

}  // namespace kestrow::service
