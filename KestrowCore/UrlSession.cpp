#include "KestrowCore/UrlSession.hpp"

#include <curl/curl.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <limits>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {

namespace {

using Result = std::expected<HttpResponse, TransportError>;
using RequestId = std::uint64_t;

struct DeleteEasy {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct DeleteMulti {
  void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct DeleteList {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

// Signals are for the main thread. SIGPIPE above all: a TLS connection that the server has closed
// raises it on the thread that writes, and libcurl leaves it alone when told not to use signals.
void blockSignals() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

}  // namespace

// One request and what has come of its answer. Network thread only.
class UrlSession::Transfer {
 public:
  Transfer(RequestId id, HttpRequest request, const Options& options)
      : id_(id), request_(std::move(request)), options_(options), easy_(curl_easy_init()) {
    setUpSafety();
    setUpRequest();
    setUpCallbacks();
  }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  RequestId id() const { return id_; }
  CURL* handle() const { return easy_.get(); }
  // What became of setting it up; anything but CURLE_OK must not be sent.
  CURLcode setUp() const { return setUp_; }

  Result result(CURLcode code) {
    if (code != CURLE_OK) return std::unexpected(TransportError{describe(code)});
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    // To libcurl an answer that breaks off in its headers is one without a body.
    if (!hasHeaders_ || status < 200) {
      return std::unexpected(TransportError{"The answer broke off in its headers"});
    }
    return HttpResponse{.body = std::move(body_), .status = static_cast<int>(status)};
  }

 private:
  template <class T>
  void set(CURLoption option, T value) {
    const CURLcode code = curl_easy_setopt(handle(), option, value);
    if (setUp_ == CURLE_OK) setUp_ = code;
  }

  void setUpSafety() {
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

  void setUpRequest() {
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

  void setUpCallbacks() {
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
  void addHeader(const std::string& name, const std::string& rest) {
    headers_.reset(curl_slist_append(headers_.release(), (name + rest).c_str()));
    if (!headers_) setUp_ = CURLE_OUT_OF_MEMORY;
  }

  std::string describe(CURLcode code) const {
    if (!refusal_.empty()) return refusal_;
    return error_[0] == '\0' ? curl_easy_strerror(code) : error_.data();
  }

  // The body as it comes, unpacked. Taking less than was given ends the transfer.
  static std::size_t onBody(const char* bytes, std::size_t /*one*/, std::size_t count, void* self) {
    auto& transfer = *static_cast<Transfer*>(self);
    if (count > transfer.options_.maxBodyBytes - transfer.body_.size()) {
      transfer.refusal_ = "The answer's body is too long";
      return CURL_WRITEFUNC_ERROR;
    }
    transfer.body_.append(bytes, count);
    return count;
  }

  // Called for each header line of every answer: interim ones, redirects and trailers too.
  static std::size_t onHeader(const char* bytes, std::size_t /*one*/, std::size_t count,
                              void* self) {
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
  static int onConnected(void* self, char* /*address*/, char* /*ownAddress*/, int /*port*/,
                         int /*ownPort*/) {
    auto& transfer = *static_cast<Transfer*>(self);
    const char* url = "";
    curl_easy_getinfo(transfer.handle(), CURLINFO_EFFECTIVE_URL, &url);
    const bool isSecure = curl_strnequal(url, "https:", 6) != 0;
    if (transfer.isSecure_ && !isSecure) {
      transfer.refusal_ = "A redirect from https to http was refused";
      return CURL_PREREQFUNC_ABORT;
    }
    transfer.isSecure_ = isSecure;
    return CURL_PREREQFUNC_OK;
  }

  RequestId id_;
  HttpRequest request_;
  const Options& options_;
  std::string body_;
  std::size_t headerBytes_ = 0;
  bool hasHeaders_ = false;  // those of the answer last begun are whole
  bool isSecure_ = false;    // the server asked last was one of https
  std::string refusal_;      // why we ended it ourselves
  std::array<char, CURL_ERROR_SIZE> error_{};
  CURLcode setUp_ = CURLE_OK;
  std::unique_ptr<curl_slist, DeleteList> headers_;
  std::unique_ptr<CURL, DeleteEasy> easy_;
};

// The network thread. Made and ordered about by the main thread.
class UrlSession::Network {
 public:
  // Called on the network thread with each answer; requests that were cancelled have none.
  using OnResult = std::function<void(RequestId, Result)>;

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

  void start(RequestId id, HttpRequest request) { give(Start{id, std::move(request)}); }
  void cancel(RequestId id) { give(Cancel{id}); }

 private:
  struct Start {
    RequestId id;
    HttpRequest request;
  };
  struct Cancel {
    RequestId id;
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

  void drop(RequestId id) {
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
  std::unordered_map<RequestId, std::unique_ptr<Transfer>> transfers_;  // network thread only
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
    const RequestId id = nextId_++;
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
        [self = weak_from_this(), &mainThread = mainThread_](RequestId id, Result result) {
          auto shared = std::make_shared<Result>(std::move(result));
          mainThread.post([self, id, shared] {
            if (const auto state = self.lock()) state->complete(id, std::move(*shared));
          });
        });
  }

  void complete(RequestId id, Result result) {
    const auto entry = waiting_.extract(id);
    if (entry) entry.mapped().complete(std::move(result));
  }

  void cancel(RequestId id) {
    if (waiting_.erase(id) > 0) network_->cancel(id);
  }

  MainThread& mainThread_;
  Options options_;
  std::map<RequestId, Pending<Result>> waiting_;
  RequestId nextId_ = 0;
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
