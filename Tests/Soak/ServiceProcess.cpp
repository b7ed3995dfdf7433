#include "Tests/Soak/ServiceProcess.hpp"

#include "ScoreService/ScoreServer.hpp"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>
#include <utility>

namespace kestrow {
namespace {

constexpr int anyPort = -1;
constexpr int noPort = 0;

static_assert(std::atomic<Date>::is_always_lock_free, "two processes share it");

[[noreturn]] void giveUp(const std::string& why) {
  std::cerr << "the score service: " << why << '\n' << std::flush;
  std::_Exit(2);
}

bool send(int channel, int number) {
  return write(channel, &number, sizeof number) == sizeof number;
}

bool receive(int channel, int& number) {
  return read(channel, &number, sizeof number) == sizeof number;
}

// The other process: serves as it is told until nobody tells it any more.
void serve(int channel, const service::MatchFeed& feed, const std::vector<service::Fault>& faults,
           const std::atomic<Date>& clock) {
  std::unique_ptr<service::ScoreServer> server;
  for (int port = 0; receive(channel, port);) {
    server.reset();
    if (port != noPort) {
      auto started =
          service::ScoreServer::start(feed, [&clock] { return clock.load(); },
                                      {.port = port == anyPort ? 0 : port, .faults = faults});
      if (!started) giveUp(started.error());
      server = *std::move(started);
      port = server->port();
    }
    if (!send(channel, port)) return;
  }
}

}  // namespace

ServiceProcess::ServiceProcess(const service::MatchFeed& feed,
                               const std::vector<service::Fault>& faults, Date now) {
  void* const memory = mmap(nullptr, sizeof(std::atomic<Date>), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) giveUp("no shared memory");
  clock_ = new (memory) std::atomic<Date>(now);
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    giveUp("no channel");
  }
  process_ = fork();
  if (process_ < 0) giveUp("no process");
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    close(ends[0]);
    serve(ends[1], feed, faults, *clock_);
    std::_Exit(0);
  }
  close(ends[1]);
  channel_ = ends[0];
  port_ = tell(anyPort);
}

ServiceProcess::~ServiceProcess() {
  close(channel_);
  waitpid(process_, nullptr, 0);
  munmap(clock_, sizeof *clock_);
}

int ServiceProcess::tell(int port) {
  int answer = 0;
  if (!send(channel_, port) || !receive(channel_, answer)) giveUp("it has ended");
  return answer;
}

void ServiceProcess::stop() {
  tell(noPort);
}

void ServiceProcess::start() {
  tell(port_);
}

}  // namespace kestrow
