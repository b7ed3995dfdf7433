#include "KestrowCore/UrlSession.hpp"

#include "KestrowCore/UrlSessionCurl.hpp"
#include "KestrowCore/UrlSessionTransfer.hpp"

#include <pthread.h>

#include <csignal>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {

namespace {

using Result = std::expected<HttpResponse, TransportError>;

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
      : options_(options), onResult_(std::move(onResult)) {}
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;

  // Drops the requests under way. No answer is given after this.
  ~Network() {
    give(End{});
    if (thread_.joinable()) thread_.join();
  }

  // Starts the thread, unless it runs. Orders may come before.
  void open() {
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
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
  using Multi = std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)>;

  void give(Order order) {
    const std::lock_guard lock(mutex_);
    orders_.push_back(std::move(order));
    // The thread looks for orders once it has set itself up.
    if (multi_) curl_->multiWakeup(multi_.get());
    if (!curl_) refuseOrders();
  }

  // False when there is no network to be had. On the network thread, for loading the library would
  // keep the main thread from its windows.
  bool setUp() {
    auto curl = Curl::load(options_.libraryFile);
    Multi multi(curl ? curl->multiInit() : nullptr, curl ? curl->multiCleanup : nullptr);
    if (curl && !multi) curl = std::unexpected("libcurl can't be set up");
    const std::lock_guard lock(mutex_);
    curl_ = std::move(curl);
    multi_ = std::move(multi);
    if (!curl_) refuseOrders();
    return curl_.has_value();
  }

  // The mutex is held.
  void refuseOrders() {
    for (const Order& order : std::exchange(orders_, {})) {
      const auto* const started = std::get_if<Start>(&order);
      if (started) onResult_(started->id, std::unexpected(TransportError{curl_.error()}));
    }
  }

  void run() {
    blockSignals();
    if (!setUp()) return;
    while (takeOrders()) {
      int running = 0;
      curl_->multiPerform(multi_.get(), &running);
      giveResults();
      // Sleeps until a socket is ready, a transfer's time is up or there is a new order.
      curl_->multiPoll(multi_.get(), nullptr, 0, std::numeric_limits<int>::max(), nullptr);
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
    auto transfer =
        std::make_unique<Transfer>(*curl_, start.id, std::move(start.request), options_);
    if (transfer->setUp() != CURLE_OK) {
      onResult_(start.id, transfer->result(transfer->setUp()));
      return;
    }
    if (curl_->multiAddHandle(multi_.get(), transfer->handle()) != CURLM_OK) {
      onResult_(start.id, transfer->result(CURLE_FAILED_INIT));
      return;
    }
    transfers_.emplace(start.id, std::move(transfer));
  }

  void giveResults() {
    int left = 0;
    while (const CURLMsg* const message = curl_->multiInfoRead(multi_.get(), &left)) {
      if (message->msg != CURLMSG_DONE) continue;
      Transfer* transfer = nullptr;
      curl_->easyGetinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
      onResult_(transfer->id(), transfer->result(message->data.result));
      drop(transfer->id());
    }
  }

  void drop(Transfer::Id id) {
    const auto place = transfers_.find(id);
    if (place == transfers_.end()) return;
    curl_->multiRemoveHandle(multi_.get(), place->second->handle());
    transfers_.erase(place);
  }

  const Options& options_;
  OnResult onResult_;
  std::mutex mutex_;  // of orders_, and of setting up the next two
  std::vector<Order> orders_;
  std::expected<Curl, std::string> curl_;  // or why there is none
  Multi multi_{nullptr, nullptr};
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

  void hold() { isHeld_ = true; }
  void release() {
    if (std::exchange(isHeld_, false) && network_) network_->open();
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
    if (!isHeld_) network_->open();
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
  bool isHeld_ = false;
  bool hasEnded_ = false;
  std::unique_ptr<Network> network_;
};

UrlSession::UrlSession(MainThread& mainThread) : UrlSession(mainThread, Options()) {}

UrlSession::UrlSession(MainThread& mainThread, Options options)
    : state_(std::make_shared<State>(mainThread, std::move(options))) {}

UrlSession::~UrlSession() {
  state_->end();
}

void UrlSession::hold() {
  state_->hold();
}

void UrlSession::release() {
  state_->release();
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
