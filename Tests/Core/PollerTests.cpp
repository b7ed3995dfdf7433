#include "KestrowCore/Poller.hpp"
#include "Tests/Core/PollerFixture.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using records::live;
using records::match;
using testing::ElementsAre;
using testing::IsEmpty;

PollerTest::Answer failed() {
  return std::unexpected(TransportError{.description = "no network"});
}

TEST_F(PollerTest, DoesNothingUntilStarted) {
  EXPECT_THAT(requests, IsEmpty());
  EXPECT_FALSE(poller->isPaused());
  EXPECT_FALSE(poller->scheduledInterval());
  EXPECT_EQ(poller->state(), FollowState());
}

TEST_F(PollerTest, PollsAtOnceThenWaitsAndPollsAgain) {
  poller->start();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_THAT(waits.all, IsEmpty());
  EXPECT_THAT(changes, IsEmpty());
  answer(0, live({match("a")}));
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(changes[0].lastResponse, live({match("a")}));
  EXPECT_EQ(changes[0], poller->state());
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(300)));
  EXPECT_EQ(poller->scheduledInterval(), Seconds(300));
  waits.endLast();
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_THAT(waits.pending(), IsEmpty());
  answer(1, live({}));
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(300)));
  EXPECT_EQ(changes.size(), 2U);
}

TEST_F(PollerTest, ThePhaseOfTheFollowedMatchDecidesTheWait) {
  poller->follow("a");
  poller->start();
  answer(0, live({match("a")}));
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(60)));
  waits.endLast();
  answer(1, live({match("a", MatchPhase::inningsBreak)}));
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(60)));
  waits.endLast();
  answer(2, MatchesResponse{.finished = {match("a", MatchPhase::finished)}});
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(300)));
  EXPECT_EQ(poller->scheduledInterval(), Seconds(300));
}

TEST_F(PollerTest, FailuresCountAndDoNotLengthenTheWait) {
  poller->follow("a");
  poller->start();
  answer(0, live({match("a")}));
  const std::vector<Answer> failures{
      failed(), std::unexpected(ScoreClientError{ScoreClientError::Http{500}}),
      std::unexpected(ScoreClientError{ScoreClientError::Decoding{"live: missing"}})};
  for (std::size_t miss = 0; miss < failures.size(); ++miss) {
    EXPECT_FALSE(poller->state().isStale());
    waits.endLast();
    answer(miss + 1, failures[miss]);
    EXPECT_EQ(changes.back().consecutiveFailures, static_cast<std::int64_t>(miss) + 1);
    EXPECT_THAT(waits.pending(), ElementsAre(Seconds(60)));
  }
  EXPECT_TRUE(poller->state().isStale());
  EXPECT_EQ(poller->state().lastMatch, match("a"));
  waits.endLast();
  answer(4, live({match("a")}));
  EXPECT_FALSE(poller->state().isStale());
}

TEST_F(PollerTest, DropsTheAnswerThatWasInFlightWhenPaused) {
  poller->start();
  poller->pause();
  EXPECT_TRUE(poller->isPaused());
  answer(0, live({match("a")}));
  EXPECT_FALSE(poller->state().lastResponse);
  EXPECT_THAT(changes, IsEmpty());
  EXPECT_THAT(waits.all, IsEmpty());
  EXPECT_FALSE(poller->scheduledInterval());
}

TEST_F(PollerTest, DropsTheFailureThatWasInFlightWhenPaused) {
  poller->start();
  poller->pause();
  answer(0, failed());
  EXPECT_EQ(poller->state().consecutiveFailures, 0);
  EXPECT_THAT(changes, IsEmpty());
  EXPECT_THAT(waits.all, IsEmpty());
}

TEST_F(PollerTest, AnAnswerFromBeforeThePauseIsDroppedAlsoAfterResuming) {
  poller->start();
  poller->pause();
  poller->resume();
  EXPECT_FALSE(poller->isPaused());
  ASSERT_EQ(requests.size(), 2U);
  answer(0, live({match("old")}));
  EXPECT_THAT(changes, IsEmpty());
  EXPECT_THAT(waits.all, IsEmpty());
  answer(1, live({match("new")}));
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(changes[0].lastResponse, live({match("new")}));
  EXPECT_EQ(waits.pending().size(), 1U);
}

TEST_F(PollerTest, PausingEndsTheWaitAndResumingPollsAtOnce) {
  poller->start();
  answer(0, live({}));
  poller->pause();
  EXPECT_THAT(waits.pending(), IsEmpty());
  EXPECT_TRUE(waits.all[0]->wasCancelled);
  EXPECT_EQ(requests.size(), 1U);
  poller->resume();
  EXPECT_EQ(requests.size(), 2U);
}

TEST_F(PollerTest, PausingTwiceAndResumingTwiceCountOnce) {
  poller->start();
  poller->pause();
  poller->pause();
  poller->resume();
  poller->resume();
  EXPECT_EQ(requests.size(), 2U);
  answer(1, live({}));
  EXPECT_EQ(changes.size(), 1U);
}

TEST_F(PollerTest, ResumingAStoppedPollerOnlyEndsThePause) {
  poller->pause();
  poller->resume();
  EXPECT_FALSE(poller->isPaused());
  EXPECT_THAT(requests, IsEmpty());
}

TEST_F(PollerTest, ResumingWithoutAPauseDoesNothing) {
  poller->start();
  poller->resume();
  EXPECT_EQ(requests.size(), 1U);
}

TEST_F(PollerTest, StartingEndsAPause) {
  poller->pause();
  poller->start();
  EXPECT_FALSE(poller->isPaused());
  answer(0, live({}));
  EXPECT_EQ(waits.pending().size(), 1U);
}

TEST_F(PollerTest, AnAnswerInFlightWhenStoppedIsStillTakenAndNothingFollows) {
  poller->start();
  poller->stop();
  answer(0, live({match("a")}));
  EXPECT_EQ(changes.size(), 1U);
  EXPECT_THAT(waits.all, IsEmpty());
  EXPECT_EQ(poller->scheduledInterval(), Seconds(300));
}

TEST_F(PollerTest, StoppingEndsTheWait) {
  poller->start();
  answer(0, live({}));
  poller->stop();
  EXPECT_THAT(waits.pending(), IsEmpty());
  EXPECT_TRUE(waits.all[0]->wasCancelled);
}

TEST_F(PollerTest, DestroyingItDropsTheWaitAndThePollsInFlight) {
  poller->start();
  answer(0, live({}));
  poller->follow("a");
  int abandoned = 0;
  requests[1].onAbandoned([&] { ++abandoned; });
  changes.clear();
  poller.reset();
  EXPECT_EQ(abandoned, 1);
  EXPECT_THAT(waits.pending(), IsEmpty());
  answer(1, live({}));
  EXPECT_THAT(changes, IsEmpty());
}

TEST_F(PollerTest, OverlappingPollsAreTakenAsTheyEndAndOnlyOneWaitIsLeft) {
  poller->start();
  poller->follow("a");
  ASSERT_EQ(requests.size(), 2U);
  changes.clear();
  answer(1, live({match("a")}));
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(60)));
  answer(0, live({}));
  ASSERT_EQ(changes.size(), 2U);
  EXPECT_TRUE(changes[0].lastMatch);
  EXPECT_FALSE(changes[1].lastMatch);
  EXPECT_THAT(waits.pending(), ElementsAre(Seconds(300)));
  EXPECT_TRUE(waits.all[0]->wasCancelled);
}

TEST_F(PollerTest, AManualPollTakesThePlaceOfTheOneThatWaits) {
  poller->start();
  answer(0, live({}));
  TaskScope scope;
  scope.start(poller->pollNow());
  EXPECT_EQ(requests.size(), 2U);
  EXPECT_THAT(waits.pending(), IsEmpty());
  EXPECT_TRUE(waits.all[0]->wasCancelled);
  EXPECT_FALSE(scope.isIdle());
  answer(1, live({}));
  EXPECT_TRUE(scope.isIdle());
  EXPECT_EQ(waits.pending().size(), 1U);
}

TEST_F(PollerTest, AManualPollWhilePausedDoesNothing) {
  poller->start();
  answer(0, live({}));
  poller->pause();
  TaskScope scope;
  scope.start(poller->pollNow());
  EXPECT_EQ(requests.size(), 1U);
  EXPECT_TRUE(scope.isIdle());
}

TEST_F(PollerTest, AManualPollOfAStoppedPollerIsTakenAndNoWaitFollows) {
  TaskScope scope;
  scope.start(poller->pollNow());
  answer(0, live({}));
  EXPECT_EQ(changes.size(), 1U);
  EXPECT_THAT(waits.all, IsEmpty());
}

TEST_F(PollerTest, PausingFromOnChangeSetsNoWait) {
  poller->onChange = [this](const FollowState&) { poller->pause(); };
  poller->start();
  answer(0, live({}));
  EXPECT_THAT(waits.all, IsEmpty());
}

TEST(TaskPollScheduler, RunsTheActionWhenTheTimeHasPassed) {
  ManualMainThread mainThread;
  TaskPollScheduler scheduler(mainThread);
  int runs = 0;
  const auto timer = scheduler.schedule(Seconds(1.5), [&] { ++runs; });
  mainThread.advance(Seconds(1.4));
  EXPECT_EQ(runs, 0);
  mainThread.advance(Seconds(0.1));
  EXPECT_EQ(runs, 1);
  mainThread.advance(Seconds(10));
  EXPECT_EQ(runs, 1);
}

// Notes the delays that it is asked for.
class DelayNotingMainThread : public ManualMainThread {
 public:
  std::vector<Seconds> asked;
  std::unique_ptr<DelayedAction> after(Seconds delay, std::function<void()> action) override {
    asked.push_back(delay);
    return ManualMainThread::after(delay, std::move(action));
  }
};

TEST(TaskPollScheduler, ANegativeIntervalWaitsZeroSeconds) {
  DelayNotingMainThread mainThread;
  TaskPollScheduler scheduler(mainThread);
  int runs = 0;
  const auto first = scheduler.schedule(Seconds(-5), [&] { ++runs; });
  const auto second = scheduler.schedule(Seconds(std::numeric_limits<double>::quiet_NaN()), [] {});
  const auto third = scheduler.schedule(Seconds(0.5), [] {});
  EXPECT_THAT(mainThread.asked, ElementsAre(Seconds(0), Seconds(0), Seconds(0.5)));
  EXPECT_EQ(runs, 0);
  mainThread.advance(Seconds(0));
  EXPECT_EQ(runs, 1);
}

TEST(TaskPollScheduler, ACancelledOrDroppedTimerNeverRuns) {
  ManualMainThread mainThread;
  TaskPollScheduler scheduler(mainThread);
  int runs = 0;
  const auto cancelled = scheduler.schedule(Seconds(1), [&] { ++runs; });
  auto dropped = scheduler.schedule(Seconds(1), [&] { ++runs; });
  cancelled->cancel();
  cancelled->cancel();
  dropped.reset();
  mainThread.advance(Seconds(2));
  EXPECT_EQ(runs, 0);
}

TEST(PollerWithAClient, AsksTheListEndpointOnTheMainThreadsClock) {
  ManualMainThread mainThread;
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  ASSERT_TRUE(store.setFollowedMatchId("a"));
  std::vector<HttpRequest> requests;
  const std::string body =
      R"({"live": [{"id": "a", "league": "L", "team1": {"name": "A", "short": "A"},
                    "team2": {"name": "B", "short": "B"}, "state": "live", "status": "",
                    "innings": []}]})";
  const Transport transport = [&](const HttpRequest& request) {
    requests.push_back(request);
    const Pending<std::expected<HttpResponse, TransportError>> pending;
    pending.complete(HttpResponse{.body = body, .status = 200});
    return pending.task();
  };
  Poller poller({.baseUrl = "http://service", .transport = transport}, mainThread, store);
  poller.start();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].url, "http://service/api/matches");
  ASSERT_TRUE(poller.state().lastMatch);
  mainThread.advance(Seconds(59));
  EXPECT_EQ(requests.size(), 1U);
  mainThread.advance(Seconds(1));
  EXPECT_EQ(requests.size(), 2U);
  mainThread.advance(Seconds(600));
  EXPECT_EQ(requests.size(), 12U);
}

}  // namespace
}  // namespace kestrow
