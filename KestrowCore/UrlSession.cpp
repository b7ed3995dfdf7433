#include "KestrowCore/UrlSession.hpp"

#include "KestrowCore/UrlSessionTransfer.hpp"

#include <curl/curl.h>
#include <pthread.h>

#include <csignal>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {

namespace {

using Result = std::expected<HttpResponse, TransportError>;

struct DeleteMulti {
  void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};

// Signals are for the main thread. SIGPIPE above all: a TLS connection that the server has closed
// raises it on the thread that writes, and libcurl leaves it alone when told not to use signals.
void blockSignals() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

}  // namespace

// The network thread. Made and ordered about by the main thread.
class UrlSession::Network {
 public:
  // Called on the network thread with each answer; requests that were cancelled have none.
  using OnResult = std::function<void(Transfer::Id, Result)>;

  Network(const Options& options, OnResult onResult)
      : options_(options), onResult_(std::move(onResult)) {
    thread_ = std::thread([this] { run(); });
  }
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;

  // Drops the requests under way. No answer is given after this.
  ~Network() {
    give(End{});
    thread_.join();
  }

  void start(Transfer::Id id, HttpRequest request) { give(Start{id, std::move(request)}); }
  void cancel(Transfer::Id id) { give(Cancel{id}); }

 private:
  struct Start {
    Transfer::Id id;
    HttpRequest request;
  };
  struct Cancel {
    Transfer::Id id;
  };
  struct End {};
  using Order = std::variant<Start, Cancel, End>;

  static CURLM* makeMulti() {
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* const multi = ready == CURLE_OK ? curl_multi_init() : nullptr;
    if (multi == nullptr) throw std::bad_alloc();
    return multi;
  }

  void give(Order order) {
    const std::lock_guard lock(mutex_);
    orders_.push_back(std::move(order));
    // The thread looks for orders once it has set itself up.
    if (multi_) curl_multi_wakeup(multi_.get());
  }

  // On the network thread, since it takes the library longer than the main thread has before the
  // first picture.
  void setUp() {
    std::unique_ptr<CURLM, DeleteMulti> multi(makeMulti());
    const std::lock_guard lock(mutex_);
    multi_ = std::move(multi);
  }

  void run() {
    blockSignals();
    setUp();
    while (takeOrders()) {
      int running = 0;
      curl_multi_perform(multi_.get(), &running);
      giveResults();
      // Sleeps until a socket is ready, a transfer's time is up or there is a new order.
      curl_multi_poll(multi_.get(), nullptr, 0, std::numeric_limits<int>::max(), nullptr);
    }
    while (!transfers_.empty()) drop(transfers_.begin()->first);
  }

  // False when it is time to end.
  bool takeOrders() {
    std::vector<Order> orders;
    {
      const std::lock_guard lock(mutex_);
      orders.swap(orders_);
    }
    for (Order& order : orders) {
      if (std::holds_alternative<End>(order)) return false;
      if (const auto* const cancelled = std::get_if<Cancel>(&order)) drop(cancelled->id);
      if (auto* const started = std::get_if<Start>(&order)) begin(std::move(*started));
    }
    return true;
  }

  void begin(Start start) {
    auto transfer = std::make_unique<Transfer>(start.id, std::move(start.request), options_);
    if (transfer->setUp() != CURLE_OK) {
      onResult_(start.id, transfer->result(transfer->setUp()));
      return;
    }
    if (curl_multi_add_handle(multi_.get(), transfer->handle()) != CURLM_OK) {
      onResult_(start.id, transfer->result(CURLE_FAILED_INIT));
      return;
    }
    transfers_.emplace(start.id, std::move(transfer));
  }

  void giveResults() {
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left)) {
      if (message->msg != CURLMSG_DONE) continue;
      Transfer* transfer = nullptr;
      curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
      onResult_(transfer->id(), transfer->result(message->data.result));
      drop(transfer->id());
    }
  }

  void drop(Transfer::Id id) {
    const auto place = transfers_.find(id);
    if (place == transfers_.end()) return;
    curl_multi_remove_handle(multi_.get(), place->second->handle());
    transfers_.erase(place);
  }

  const Options& options_;
  OnResult onResult_;
  std::mutex mutex_;  // of orders_, and of making multi_
  std::vector<Order> orders_;
  std::unique_ptr<CURLM, DeleteMulti> multi_;
  std::unordered_map<Transfer::Id, std::unique_ptr<Transfer>> transfers_;  // network thread only
  std::thread thread_;
};

// The main thread's side: who waits for which request. Answers that were posted, and tasks that
// were not awaited, may outlive the session; they find it ended.
class UrlSession::State : public std::enable_shared_from_this<State> {
 public:
  State(MainThread& mainThread, Options options)
      : mainThread_(mainThread), options_(std::move(options)) {}

  // Starts a request.
  Pending<Result> start(HttpRequest request) {
    Pending<Result> pending;
    auto wrong = hasEnded_ ? std::optional<std::string>(ended) : defect(request);
    if (wrong) {
      pending.complete(std::unexpected(TransportError{std::move(*wrong)}));
      return pending;
    }
    if (!network_) startNetwork();
    const Transfer::Id id = nextId_++;
    waiting_.emplace(id, pending);
    pending.onAbandoned([self = weak_from_this(), id] {
      if (const auto state = self.lock()) state->cancel(id);
    });
    network_->start(id, std::move(request));
    return pending;
  }

  // Ends the network thread, and soon everyone's waiting.
  void end() {
    hasEnded_ = true;
    network_.reset();
    for (const auto& [id, pending] : std::exchange(waiting_, {})) {
      mainThread_.post([pending] { pending.complete(std::unexpected(TransportError{ended})); });
    }
  }

 private:
  static constexpr const char* ended = "The session has ended";

  void startNetwork() {
    network_ = std::make_unique<Network>(
        options_,
        [self = weak_from_this(), &mainThread = mainThread_](Transfer::Id id, Result result) {
          auto shared = std::make_shared<Result>(std::move(result));
          mainThread.post([self, id, shared] {
            if (const auto state = self.lock()) state->complete(id, std::move(*shared));
          });
        });
  }

  void complete(Transfer::Id id, Result result) {
    const auto entry = waiting_.extract(id);
    if (entry) entry.mapped().complete(std::move(result));
  }

  void cancel(Transfer::Id id) {
    if (waiting_.erase(id) > 0) network_->cancel(id);
  }

  MainThread& mainThread_;
  Options options_;
  std::map<Transfer::Id, Pending<Result>> waiting_;
  Transfer::Id nextId_ = 0;
  bool hasEnded_ = false;
  std::unique_ptr<Network> network_;
};

UrlSession::UrlSession(MainThread& mainThread) : UrlSession(mainThread, Options()) {}

UrlSession::UrlSession(MainThread& mainThread, Options options)
    : state_(std::make_shared<State>(mainThread, std::move(options))) {}

UrlSession::~UrlSession() {
  state_->end();
}

Task<Result> UrlSession::send(HttpRequest request) {
  return sendWith(state_, std::move(request));
}

Task<Result> UrlSession::sendWith(std::shared_ptr<State> state, HttpRequest request) {
  const Pending<Result> pending = state->start(std::move(request));
  auto task = pending.task();
  Result result = co_await task;
  co_return result;
}

Transport urlSessionTransport(std::shared_ptr<UrlSession> session) {
  return [session = std::move(session)](HttpRequest request) {
    return session->send(std::move(request));
  };
}

}  // namespace kestrow
