// What a render costs that finds everything as it was: the program does one with every answer.
#include "Benchmarks/Counted/Allocations.hpp"
#include "Kestrow/AppDelegate.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/HeldTransport.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/NoLogin.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <benchmark/benchmark.h>

#include <memory>

namespace kestrow {
namespace {

Match liveMatch() {
  Match match = records::match("m1");
  match.innings = {{.team = "MI", .runs = 145, .wickets = 3, .overs = 15.2}};
  return match;
}

void renderWithoutNews(benchmark::State& state) {
  const TemporaryFolder folder;
  (void)LocalStore(folder.path()).setFollowedMatchId("m1");
  ManualMainThread mainThread;
  HeldTransport http;
  FakeDesktop desktop;
  FakeDefaults defaults;
  AppDelegate program({.desktop = desktop,
                       .defaults = defaults,
                       .mainThread = mainThread,
                       .transport = http.transport(),
                       .loginService = std::make_unique<NoLoginService>(),
                       .launchAgent = nullptr,
                       .stateDirectory = folder.path(),
                       .now = mainThread.clock()});
  program.applicationDidFinishLaunching();
  const bool isFed = http.answer("/api/matches", encode(MatchesResponse{.live = {liveMatch()}})) &&
                     http.answer("/api/pro/match", encode(ProMatchPayload{.match = liveMatch()}));
  const auto surface = desktop.surface();
  if (!isFed || !surface || !surface->client->accessibilityLabel().contains("145/3")) {
    state.SkipWithError("the score is not shown");
    return;
  }
  const auto touched = [&] {
    return static_cast<double>(surface->redraws) + surface->dotsSet + surface->labelChanges +
           surface->ordersFront + static_cast<double>(surface->moves.size());
  };
  const double before = touched();
  {
    const Allocations counted(state);
    for ([[maybe_unused]] const auto turn : state) program.render();
  }
  state.counters["windowCalls"] = touched() - before;
}
// So many that starting the program doesn't count beside them where instructions are counted.
BENCHMARK(renderWithoutNews)->Iterations(20'000);

}  // namespace
}  // namespace kestrow
