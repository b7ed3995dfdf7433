#include "Tests/Support/RawHttpServer.hpp"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace kestrow {

namespace {

constexpr std::chrono::seconds patience{20};

void check(bool isDone, const char* what) {
  if (!isDone) throw std::system_error(errno, std::generic_category(), what);
}

// Not for programs that a test starts. In a call of its own, since macOS has no other way.
int closedOnExec(int socket) {
  ::fcntl(socket, F_SETFD, FD_CLOEXEC);
  return socket;
}

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

// The length of the body that follows these headers.
std::size_t bodyLength(std::string_view headers) {
  constexpr std::string_view name = "Content-Length: ";
  const std::size_t place = headers.find(name);
  std::size_t length = 0;
  if (place == std::string_view::npos) return length;
  const std::string_view digits = headers.substr(place + name.size());
  std::from_chars(digits.data(), digits.data() + digits.size(), length);
  return length;
}

}  // namespace

struct RawHttpServer::TlsContext {
  explicit TlsContext(const TlsIdentity& identity) : context(SSL_CTX_new(TLS_server_method())) {
    BIO* const certificateText = BIO_new_mem_buf(identity.certificate.c_str(), -1);
    BIO* const keyText = BIO_new_mem_buf(identity.key.c_str(), -1);
    X509* const certificate = PEM_read_bio_X509(certificateText, nullptr, nullptr, nullptr);
    EVP_PKEY* const key = PEM_read_bio_PrivateKey(keyText, nullptr, nullptr, nullptr);
    const bool isUsable = SSL_CTX_use_certificate(context, certificate) == 1 &&
                          SSL_CTX_use_PrivateKey(context, key) == 1;
    EVP_PKEY_free(key);
    X509_free(certificate);
    BIO_free(keyText);
    BIO_free(certificateText);
    if (!isUsable) throw std::runtime_error("OpenSSL refused a certificate");
  }
  TlsContext(const TlsContext&) = delete;
  TlsContext& operator=(const TlsContext&) = delete;
  ~TlsContext() { SSL_CTX_free(context); }

  SSL_CTX* context;
};

struct RawHttpServer::Connection::Tls {
  Tls(SSL_CTX* context, int socket) : session(SSL_new(context)) { SSL_set_fd(session, socket); }
  Tls(const Tls&) = delete;
  Tls& operator=(const Tls&) = delete;
  ~Tls() { SSL_free(session); }

  SSL* session;
};

RawHttpServer::Connection::Connection(RawHttpServer& server, int socket)
    : server_(server), socket_(socket) {}

RawHttpServer::Connection::~Connection() {
  if (tls_) SSL_shutdown(tls_->session);
  ERR_clear_error();
}

bool RawHttpServer::Connection::handshake() {
  if (!server_.tls_) return true;
  tls_ = std::make_unique<Tls>(server_.tls_->context, socket_);
  return SSL_accept(tls_->session) == 1;
}

std::string RawHttpServer::Connection::receive() {
  std::array<char, 16384> buffer{};
  const auto count = tls_ ? SSL_read(tls_->session, buffer.data(), static_cast<int>(buffer.size()))
                          : ::recv(socket_, buffer.data(), buffer.size(), 0);
  return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

std::string RawHttpServer::Connection::readRequest() {
  constexpr std::string_view headersEnd = "\r\n\r\n";
  while (true) {
    const std::size_t end = received_.find(headersEnd);
    if (end != std::string::npos) {
      const std::size_t size =
          end + headersEnd.size() + bodyLength(std::string_view(received_).substr(0, end));
      if (received_.size() >= size) {
        std::string request = received_.substr(0, size);
        received_.erase(0, size);
        const std::lock_guard lock(server_.mutex_);
        server_.requests_.push_back(request);
        server_.changed_.notify_all();
        return request;
      }
    }
    const std::string more = receive();
    if (more.empty()) return {};
    received_ += more;
  }
}

bool RawHttpServer::Connection::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = tls_ ? SSL_write(tls_->session, bytes.data(), static_cast<int>(bytes.size()))
                            : ::send(socket_, bytes.data(), bytes.size(), 0);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool RawHttpServer::Connection::pause(std::chrono::milliseconds time) {
  pollfd watched{.fd = socket_, .events = POLLRDHUP, .revents = 0};
  return ::poll(&watched, 1, static_cast<int>(time.count())) == 0;
}

void RawHttpServer::Connection::awaitClose() {
  pause(std::chrono::milliseconds(-1));
}

void RawHttpServer::Connection::reset() {
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
}

RawHttpServer::RawHttpServer(Script script, std::optional<TlsIdentity> identity)
    : script_(std::move(script)) {
  if (identity) tls_ = std::make_unique<TlsContext>(*identity);
  listener_ = closedOnExec(::socket(AF_INET, SOCK_STREAM, 0));
  check(listener_ >= 0, "socket");
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof(address);
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  check(::bind(listener_, generic, size) == 0, "bind");
  check(::listen(listener_, 512) == 0, "listen");
  check(::getsockname(listener_, generic, &size) == 0, "getsockname");
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { accept(); });
}

RawHttpServer::~RawHttpServer() {
  isEnding_ = true;
  ::shutdown(listener_, SHUT_RDWR);
  wakeAcceptor();
  acceptor_.join();
  ::close(listener_);
  {
    const std::lock_guard lock(mutex_);
    for (const int socket : sockets_) ::shutdown(socket, SHUT_RDWR);
  }
  for (std::thread& thread : threads_) thread.join();
}

std::string RawHttpServer::url(std::string_view path) const {
  return (tls_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) +
         std::string(path);
}

std::vector<std::string> RawHttpServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

bool RawHttpServer::awaitRequests(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, patience, [&] { return requests_.size() >= count; });
}

bool RawHttpServer::awaitClosed(int count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, patience, [&] { return closedCount_ >= count; });
}

// On Linux the shutdown did it, and nobody answers here; on macOS only a connection does.
void RawHttpServer::wakeAcceptor() const {
  const sockaddr_in address = loopback(port_);
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  static_cast<void>(
      ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)));
  ::close(socket);
}

void RawHttpServer::accept() {
  while (true) {
    const int socket = closedOnExec(::accept(listener_, nullptr, nullptr));
    if (socket < 0) return;
    if (isEnding_) {
      ::close(socket);
      return;
    }
    const int noDelay = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof(noDelay));
    ++connectionCount_;
    const std::lock_guard lock(mutex_);
    sockets_.push_back(socket);
    threads_.emplace_back([this, socket] { serve(socket); });
  }
}

void RawHttpServer::serve(int socket) {
  sigset_t brokenPipe;  // a client that has gone is no reason to die
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
  {
    Connection connection(*this, socket);
    if (connection.handshake()) script_(connection);
  }
  const std::lock_guard lock(mutex_);
  sockets_.remove(socket);
  ::close(socket);
  ++closedCount_;
  changed_.notify_all();
}

std::string httpAnswer(std::string_view body, std::string_view status, std::string_view headers) {
  std::string answer = "HTTP/1.1 ";
  answer.append(status).append("\r\n").append(headers);
  answer.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n");
  return answer.append(body);
}

RawHttpServer::Script answering(std::string answer) {
  return [answer = std::move(answer)](RawHttpServer::Connection& connection) {
    while (!connection.readRequest().empty()) {
      if (!connection.write(answer)) return;
    }
  };
}

std::string gzipped(std::string_view bytes) {
  z_stream stream{};
  constexpr int gzipFormat = 15 + 16;
  if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("zlib refused to compress");
  }
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

}  // namespace kestrow
