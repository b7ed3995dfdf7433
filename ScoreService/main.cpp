// kestrow-score-service: composes clock, feed and server, and waits for the signal to end.
#include "ScoreService/Options.hpp"
#include "ScoreService/ScoreServer.hpp"

#include <csignal>
#include <cstdio>
#include <string>
#include <utility>

using namespace kestrow::service;

namespace {

int fail(const std::string& why) {
  std::fprintf(stderr, "kestrow-score-service: %s\n", why.c_str());
  return 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const auto options = parseOptions({arguments + 1, arguments + argumentCount});
  if (!options) {
    const EarlyExit& exit = options.error();
    std::fprintf(exit.code == 0 ? stdout : stderr, "%s\n", exit.text.c_str());
    return exit.code;
  }

  // Blocked before any thread begins, so that the signals wait for the main thread to take them.
  sigset_t endSignals;
  sigemptyset(&endSignals);
  sigaddset(&endSignals, SIGTERM);
  sigaddset(&endSignals, SIGINT);
  pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

  const kestrow::Now now = clockOf(*options);
  auto feed = feedOf(*options, now());
  if (!feed) return fail(feed.error());
  const auto server = ScoreServer::start(*std::move(feed), now, options->server);
  if (!server) return fail(server.error());
  std::printf("kestrow-score-service: listening on %s\n", (*server)->url().c_str());
  std::fflush(stdout);

  int signal = 0;
  sigwait(&endSignals, &signal);
  (*server)->stop();
  return 0;
}
