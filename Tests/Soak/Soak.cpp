#include "Tests/Soak/Soak.hpp"

#include "Kestrow/AppDelegate.hpp"
#include "Kestrow/PanelNodes.hpp"
#include "KestrowCore/FreedMemory.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/UrlSession.hpp"
#include "ScoreService/Feeds.hpp"
#include "Tests/Soak/Demand.hpp"
#include "Tests/Soak/ServiceProcess.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/NoLogin.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

namespace kestrow {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t mostMistakes = 20;
const Date start = *parseInternetDate("2026-04-12T14:00:00Z");

// The hours of the day at which things happen.
constexpr int clockIsSet = 12;
constexpr int serviceGoes = 18;
constexpr int serviceComesBack = 19;
constexpr int bedtime = 23;
constexpr auto night = 7h;

int hourOfDay(Date date) {
  return static_cast<int>((date - std::chrono::floor<std::chrono::days>(date)) / 1h);
}

class SoakRun {
 public:
  explicit SoakRun(const SoakOptions& options)
      : options_(options),
        feed_(service::simulatedFeed(options.seed,
                                     {.flags = {}, .start = {.balls = 48}, .speed = 1}, start)),
        service_(feed_, options.faults, start) {}

  SoakReport run() {
    report_.samples.reserve(static_cast<std::size_t>(options_.length.count()) + 1);
    report_.before = measureNow();
    launch();
    for (Date nextHour = start + 1h; now() < start + options_.length; nextHour += 1h) {
      // Not while an alert shows: what comes then would not be minutes apart.
      while (now() < nextHour || mainThread_.nextDelay() != 1min) step();
      report_.samples.push_back({(now() - start) / 1h, measureNow()});
      haveHour();
      nextHour = std::max<Date>(nextHour, std::chrono::floor<std::chrono::hours>(now()));
    }
    report_.minutesAwake =
        std::chrono::round<std::chrono::minutes>(mainThread_.now() - start).count();
    delegate_.reset();
    mainThread_.runPosted();
    report_.after = measureNow();
    return std::move(report_);
  }

 private:
  using Answer = std::expected<HttpResponse, TransportError>;

  Date now() const { return mainThread_.now() + slept_; }

  // Waits end by a clock that neither the night nor setting the time moves.
  void sleepClock(Date::duration time) {
    slept_ += time;
    service_.setClock(now());
  }

  // Begins with a match that is still to come, so that the first hour has worded dates too.
  void launch() {
    follow(feed_.matches(now()).upcoming.front().id);
    (void)LocalStore(folder_.path()).setFollowedMatchId(followed_);
    AppDelegate::Surroundings surroundings{
        .desktop = desktop_,
        .defaults = defaults_,
        .mainThread = mainThread_,
        .transport = watched(urlSessionTransport(std::make_shared<UrlSession>(mainThread_))),
        .loginService = std::make_unique<NoLoginService>(),
        .launchAgent = nullptr};
    surroundings.stateDirectory = folder_.path();
    surroundings.baseUrl = service_.url();
    surroundings.now = [this] { return now(); };
    delegate_ = std::make_unique<AppDelegate>(std::move(surroundings));
    expectPolls(1, [this] { delegate_->applicationDidFinishLaunching(); });
    step();
    lookIn(service::featuredMatchId);
  }

  void follow(const std::string& id) {
    followed_ = id;
    demand_.followed(id);
  }

  // One wake-up, by the wait that ends next.
  void step() {
    const Seconds wait = *mainThread_.nextDelay();
    service_.setClock(now() + std::chrono::round<Date::duration>(wait));
    ++report_.wakeUps;
    mainThread_.advance(wait);
    settle();
  }

  // Lets what was asked be answered, and looks at what the program then waits for.
  void settle() {
    finishRequests();
    const auto alerts = desktop_.announcements.size();
    if (alerts > 1) mistake("announced two alerts at once");
    report_.alerts += static_cast<std::int64_t>(alerts);
    if (lastAnswer_) demand_.polled(now(), *std::exchange(lastAnswer_, std::nullopt));
    demand_.drawn(now(), alerts > 0);
    if (mainThread_.delays() != demand_.waits(now())) mistake("waits for something else");
    forget();
  }

  // Each of them ends: a fault takes its time, and at most the time-out's.
  void finishRequests() {
    mainThread_.runPosted();
    while (underWay_ > 0) {
      if (mainThread_.awaitPosted() || mainThread_.awaitPosted()) continue;
      std::cerr << "a request does not end\n" << std::flush;
      std::_Exit(2);
    }
  }

  // The desktop that writes down everything it is told would grow.
  void forget() {
    desktop_.announcements.clear();
    for (const auto& panel : desktop_.panels) {
      panel->frames.clear();
      panel->calls.clear();
    }
    if (const auto surface = desktop_.surface()) surface->moves.clear();
  }

  void haveHour() {
    const int hour = hourOfDay(now());
    lookIn(betterMatch());
    if (hour == serviceGoes) service_.stop();
    if (hour == serviceComesBack) service_.start();
    if (hour == clockIsSet) {
      sleepClock(90s);
      expectPolls(1, [this] { desktop_.clockChanged.notify(); });
    }
    if (hour == bedtime) sleep();
  }

  // The user opens the panel, may pick another match, and closes the panel. The panel's list is
  // asked for as it opens.
  void lookIn(const std::optional<std::string>& pick) {
    isInPanel_ = true;
    desktop_.reopen.notify();
    finishRequests();
    isInPanel_ = false;
    const auto& panel = desktop_.panels.back();
    if (pick) {
      ++report_.picks;
      follow(*pick);
      expectPolls(1, [&] { panel->client->radioButtonPicked(panel_nodes::idOfMatch(*pick)); });
    }
    panel->client->escapePressed();
    if (panel->isVisible) mistake("the panel stays open");
  }

  // Once the followed match is over: one that is on, else the one that begins next.
  std::optional<std::string> betterMatch() const {
    const auto list = feed_.matches(now());
    const auto followed = list.match(followed_);
    if (!followed || followed->state != MatchPhase::finished) return std::nullopt;
    if (!list.live.empty()) return list.live.front().id;
    if (!list.upcoming.empty()) return list.upcoming.front().id;
    return std::nullopt;
  }

  // The machine falls asleep in the middle of a poll, whose answer is dropped.
  void sleep() {
    ++report_.nights;
    desktop_.clockChanged.notify();
    desktop_.willSleep.notify();
    finishRequests();
    lastAnswer_.reset();
    sleepClock(night);
    expectPolls(1, [this] { desktop_.didWake.notify(); });
  }

  // What the action makes the program do at once.
  void expectPolls(std::int64_t count, const std::function<void()>& action) {
    const auto before = report_.polls;
    action();
    settle();
    if (report_.polls != before + count) mistake("asked more or less than once");
  }

  Transport watched(Transport transport) {
    return [this, transport = std::move(transport)](HttpRequest request) {
      std::string url = request.url;
      return watch(transport(std::move(request)), std::move(url));
    };
  }

  // Counts the request, and keeps what the last answer to a poll says.
  Task<Answer> watch(Task<Answer> task, std::string url) {
    const UnderWay counted(underWay_);
    const bool isPoll = url.ends_with("/api/matches") && !isInPanel_;
    if (isPoll) ++report_.polls;
    if (url.find("/api/pro/match?") != std::string::npos) ++report_.keyEventRequests;
    auto answer = co_await task;
    if (isPoll) lastAnswer_ = decoded(answer);
    co_return answer;
  }

  std::optional<MatchesResponse> decoded(const Answer& answer) {
    if (answer && answer->status >= 200 && answer->status < 300) {
      if (auto list = ScoreClient::decode<MatchesResponse>(answer->body)) return *std::move(list);
    }
    ++report_.failedPolls;
    return std::nullopt;
  }

  void mistake(const std::string& what) {
    if (report_.mistakes.size() >= mostMistakes) return;
    std::string text = formatInternetDate(now()) + " " + what + "; waits:";
    for (const Seconds wait : mainThread_.delays()) text += " " + std::to_string(wait.count());
    text += "; demanded:";
    for (const Seconds wait : demand_.waits(now())) text += " " + std::to_string(wait.count());
    report_.mistakes.push_back(std::move(text));
  }

  class UnderWay {
   public:
    explicit UnderWay(int& count) : count_(count) { ++count_; }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;
    ~UnderWay() { --count_; }

   private:
    int& count_;
  };

  SoakOptions options_;
  service::MatchFeed feed_;
  ServiceProcess service_;
  TemporaryFolder folder_;
  ManualMainThread mainThread_{start};
  Date::duration slept_{0};
  FakeDesktop desktop_;
  FakeDefaults defaults_;
  Demand demand_;
  SoakReport report_;
  std::string followed_;
  int underWay_ = 0;
  bool isInPanel_ = false;
  // Of the poll that was answered last: whether there was one, and its list unless it failed.
  std::optional<std::optional<MatchesResponse>> lastAnswer_;
  std::unique_ptr<AppDelegate> delegate_;
};

std::string megabytes(std::size_t bytes) {
  return std::to_string(static_cast<double>(bytes) / (1 << 20U)) + " MB";
}

}  // namespace

std::vector<service::Fault> usualFaults() {
  // Numbers without a common divisor, so that they fall on different requests.
  std::vector<service::Fault> faults;
  for (const auto* text :
       {"latency=0.005@every:13", "status=503@every:17", "drop@every:23", "garbage@every:29",
        "truncate@every:31", "oversize@every:37", "oversize=4000000@every:41", "drip=0@every:43",
        "redirect=/api/match?id=match-1@every:47"}) {
    faults.push_back(*service::parseFault(text));
  }
  return faults;
}

SoakReport soak(const SoakOptions& options) {
  returnFreedMemory();
  return SoakRun(options).run();
}

std::vector<std::string> judge(const SoakReport& report, const SoakTolerance& tolerance) {
  std::vector<std::string> wrong;
  if (report.wakeUps != report.minutesAwake + report.alerts) {
    wrong.push_back("woke " + std::to_string(report.wakeUps) + " times in " +
                    std::to_string(report.minutesAwake) + " minutes with " +
                    std::to_string(report.alerts) + " alerts");
  }
  if (report.keyEventRequests != report.polls - report.nights + report.picks) {
    wrong.emplace_back("asked for key events otherwise than after each poll and pick");
  }
  if (report.after.openFiles != report.before.openFiles) wrong.emplace_back("left files open");
  if (report.after.threads != report.before.threads) wrong.emplace_back("left a thread");
  if (report.samples.empty()) return wrong;
  const Measures& first = report.samples.front().measures;
  for (const auto& [hour, measures] : report.samples) {
    const std::string when = " in hour " + std::to_string(hour);
    if (measures.heapBytes > first.heapBytes + tolerance.heapBytes) {
      wrong.push_back("the heap grew to " + megabytes(measures.heapBytes) + when);
    }
    if (measures.residentBytes > first.residentBytes + tolerance.residentBytes) {
      wrong.push_back("resident memory grew to " + megabytes(measures.residentBytes) + when);
    }
    if (measures.openFiles > first.openFiles + 1) wrong.push_back("more files" + when);
    if (measures.threads != first.threads) wrong.push_back("another number of threads" + when);
  }
  return wrong;
}

}  // namespace kestrow
