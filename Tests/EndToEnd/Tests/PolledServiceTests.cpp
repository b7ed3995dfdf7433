// The score poller with its real transport and the real service, whose faults hold an answer back
// or spoil it. Only the waits between polls are of a clock that the test moves.
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/Poller.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/UrlSession.hpp"
#include "ScoreService/Feeds.hpp"
#include "ScoreService/ScoreServer.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using namespace std::chrono_literals;
using service::featuredMatchId;
using testing::ElementsAre;
using testing::IsEmpty;

const Date start = *parseInternetDate("2026-04-12T14:00:00Z");

// The service's clock. Who asks it next can be held, and so can the answer that is to tell the
// time.
class HoldingClock {
 public:
  Date tell() {
    std::unique_lock lock(mutex_);
    if (std::exchange(holdsNext_, false)) {
      isHolding_ = true;
      changed_.notify_all();
      changed_.wait_for(lock, 20s, [this] { return !isHolding_; });
    }
    return now_;
  }

  void holdNext() {
    const std::scoped_lock lock(mutex_);
    holdsNext_ = true;
  }
  bool awaitHeld() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, 20s, [this] { return isHolding_; });
  }
  void release() {
    const std::scoped_lock lock(mutex_);
    isHolding_ = holdsNext_ = false;
    changed_.notify_all();
  }

  void set(Date now) {
    const std::scoped_lock lock(mutex_);
    now_ = now;
  }

 private:
  std::mutex mutex_;  // of the following
  std::condition_variable changed_;
  Date now_ = start;
  bool holdsNext_ = false;
  bool isHolding_ = false;
};

class PolledService : public testing::Test {
 protected:
  void serve(std::initializer_list<const char*> faults) {
    service::ServerSettings settings;
    for (const char* fault : faults) settings.faults.push_back(*service::parseFault(fault));
    auto feed = service::simulatedFeed(1, {.start = *service::parseStartPoint("8")}, start);
    auto started = service::ScoreServer::start(
        std::move(feed), [this] { return clock_.tell(); }, std::move(settings));
    ASSERT_TRUE(started.has_value()) << started.error();
    server_ = *std::move(started);
    makePoller();
  }

  void makePoller() {
    const Transport transport = urlSessionTransport(session_);
    const ScoreClient client{.baseUrl = server_->url(),
                             .installId = {},
                             .transport = [this, transport](HttpRequest request) {
                               request.timeout = timeout_;
                               return transport(std::move(request));
                             }};
    poller_.emplace(client, mainThread_, store_);
    poller_->follow(featuredMatchId);
    poller_->onChange = [this](const FollowState& state) {
      ++changes_;
      if (state.lastResponse) seen_.push_back(*state.lastResponse->updatedAt);
    };
  }

  // Starts the poller; the service has its request and keeps the answer.
  void startInFlight() {
    serve({});
    clock_.holdNext();
    poller_->start();
    ASSERT_TRUE(clock_.awaitHeld());
  }

  // The service must not wait for a release that does not come.
  void TearDown() override { clock_.release(); }

  // Waits for one answer, good or bad, and gives it to whoever still waits for it.
  void takeAnswer() { ASSERT_TRUE(mainThread_.awaitPosted()); }

  // Ends the wait for the next poll, whose answer may come as soon as its request is on the way.
  void pollAgain() {
    const int before = changes_;
    mainThread_.advance(poller_->state().pollInterval());
    while (changes_ == before) ASSERT_TRUE(mainThread_.awaitPosted());
  }

  HoldingClock clock_;
  std::chrono::milliseconds timeout_ = 20s;
  std::unique_ptr<service::ScoreServer> server_;
  const TemporaryFolder folder_;
  LocalStore store_{folder_.path()};
  ManualMainThread mainThread_;
  std::shared_ptr<UrlSession> session_ = std::make_shared<UrlSession>(mainThread_);
  std::optional<Poller> poller_;
  int changes_ = 0;
  std::vector<Date> seen_;  // the list's date at each change
};

TEST_F(PolledService, IsAskedAtTheFollowedMatchesPace) {
  serve({});
  poller_->start();
  takeAnswer();
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(60)));
  clock_.set(start + 1min);
  pollAgain();
  EXPECT_THAT(seen_, ElementsAre(start, start + 1min));
  poller_->follow("match-4");
  takeAnswer();
  EXPECT_EQ(poller_->state().lastMatch->state, MatchPhase::notStarted);
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(300)));
}

TEST_F(PolledService, AnAnswerInFlightAtAPauseIsDropped) {
  startInFlight();
  poller_->pause();
  clock_.release();
  takeAnswer();
  EXPECT_THAT(seen_, IsEmpty());
  EXPECT_EQ(poller_->state().lastResponse, std::nullopt);
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
  poller_->resume();
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start));
  EXPECT_EQ(server_->requestCount(), 2);
}

TEST_F(PolledService, AnAnswerFromBeforeAPauseIsDroppedAlsoBehindTheNewOne) {
  startInFlight();
  poller_->pause();
  poller_->resume();
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start));
  clock_.set(start + 1min);
  clock_.release();
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start));
  EXPECT_EQ(poller_->state().lastResponse->updatedAt, start);
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(60)));
}

TEST_F(PolledService, AnAnswerInFlightAtAStopIsTakenAndNothingFollows) {
  startInFlight();
  poller_->stop();
  clock_.release();
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start));
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
}

TEST_F(PolledService, APollerThatGoesInFlightTakesNothingWithIt) {
  startInFlight();
  poller_.reset();
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
  makePoller();
  poller_->start();
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start));
  EXPECT_EQ(server_->requestCount(), 2);
}

TEST_F(PolledService, TwoPollsAtOnceAreTakenInTheOrderOfTheirAnswers) {
  startInFlight();
  poller_->follow("match-2");
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start));
  clock_.set(start + 1min);
  clock_.release();
  takeAnswer();
  EXPECT_THAT(seen_, ElementsAre(start, start + 1min));
  EXPECT_EQ(poller_->state().lastMatch->id, "match-2");
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(60)));
}

// One answer that the service spoils, and how long the poller waits for it.
struct Spoilt {
  const char* name;
  const char* fault;
  std::chrono::milliseconds timeout = 20s;
};

class SpoiltAnswer : public PolledService, public testing::WithParamInterface<Spoilt> {};

TEST_P(SpoiltAnswer, IsOneMissAndTheNextGoodOneIsTaken) {
  serve({GetParam().fault});
  timeout_ = GetParam().timeout;
  poller_->start();
  takeAnswer();
  EXPECT_EQ(poller_->state().consecutiveFailures, 1);
  EXPECT_EQ(poller_->state().lastResponse, std::nullopt);
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(300)));
  timeout_ = 20s;
  pollAgain();
  EXPECT_EQ(poller_->state().consecutiveFailures, 0);
  EXPECT_EQ(poller_->state().lastMatch->id, featuredMatchId);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, SpoiltAnswer,
    testing::Values(Spoilt{"Late", "latency=30@first:1", 200ms},
                    Spoilt{"BadStatus", "status=503@first:1"},
                    Spoilt{"NoContent", "status=204@first:1"},
                    Spoilt{"NotModified", "status=304@first:1"}, Spoilt{"Dropped", "drop@first:1"},
                    Spoilt{"Truncated", "truncate@first:1"}, Spoilt{"Garbage", "garbage@first:1"},
                    Spoilt{"Oversized", "oversize@first:1"},
                    Spoilt{"Dripping", "drip=0.05@first:1", 200ms},
                    Spoilt{"RedirectedAway", "redirect=ftp://127.0.0.1/@first:1"}),
    [](const auto& spoilt) { return spoilt.param.name; });

}  // namespace
}  // namespace kestrow
