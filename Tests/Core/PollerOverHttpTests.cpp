// The poller with the real client and transport, against a server that answers when it is told to.
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "KestrowCore/Poller.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/UrlSession.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/RawHttpServer.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using records::live;
using records::match;
using testing::ElementsAre;
using testing::IsEmpty;

// Holds each request, by the order of their coming, until its answer is given.
class HeldServer {
 public:
  const RawHttpServer& server() const { return server_; }

  // Waits until so many requests have come and have their numbers; false when that takes too long.
  bool awaitRequests(std::size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return next_ >= count; });
  }

  void answer(std::size_t request, std::string with) {
    const std::lock_guard lock(mutex_);
    answers_[request] = std::move(with);
  }

 private:
  void serve(RawHttpServer::Connection& connection) {
    while (!connection.readRequest().empty()) {
      const std::size_t request = number();
      std::optional<std::string> answer;
      while (!answer && connection.pause(std::chrono::milliseconds(1))) answer = answerTo(request);
      if (!answer || !connection.write(*answer)) return;
    }
  }

  std::size_t number() {
    const std::lock_guard lock(mutex_);
    changed_.notify_all();
    return next_++;
  }

  std::optional<std::string> answerTo(std::size_t request) {
    const std::lock_guard lock(mutex_);
    const auto place = answers_.find(request);
    return place == answers_.end() ? std::nullopt : std::optional(place->second);
  }

  std::mutex mutex_;  // of the following
  std::condition_variable changed_;
  std::map<std::size_t, std::string> answers_;
  std::size_t next_ = 0;
  RawHttpServer server_{[this](RawHttpServer::Connection& connection) { serve(connection); }};
};

std::string listing(const std::string& id) {
  return httpAnswer(encode(live({match(id)})));
}

class PollerOverHttp : public testing::Test {
 protected:
  PollerOverHttp() {
    poller_->onChange = [this](const FollowState& state) {
      seen_.push_back(state.lastResponse ? state.lastResponse->live.at(0).id : "nothing");
    };
  }

  // Answers a request and lets the poller see it.
  void answer(std::size_t request, std::string with) {
    held_.answer(request, std::move(with));
    ASSERT_TRUE(mainThread_.awaitPosted());
  }

  HeldServer held_;
  TemporaryFolder folder_;
  LocalStore store_{folder_.path()};
  ManualMainThread mainThread_;
  std::shared_ptr<UrlSession> session_ = std::make_shared<UrlSession>(mainThread_);
  ScoreClient client_{.baseUrl = held_.server().url(""),
                      .installId = "AB-12",
                      .transport = urlSessionTransport(session_)};
  std::optional<Poller> poller_{std::in_place, client_, mainThread_, store_};
  std::vector<std::string> seen_;  // the match listed at each change
};

TEST_F(PollerOverHttp, PollsOnAtTheFollowedMatchesPaceThroughGoodAndBadAnswers) {
  poller_->follow("a");
  EXPECT_THAT(seen_, ElementsAre("nothing"));
  poller_->start();
  answer(0, listing("a"));
  EXPECT_THAT(seen_, ElementsAre("nothing", "a"));
  EXPECT_EQ(poller_->state().lastMatch, match("a"));
  const std::string notFound = httpAnswer("<html>", "404 Not Found");
  const std::string cutOff = "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n{";
  std::size_t request = 1;
  for (const std::string& bad : {notFound, httpAnswer("{\"live\":[}"), cutOff}) {
    EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(60)));
    mainThread_.advance(Seconds(60));
    EXPECT_FALSE(poller_->state().isStale());
    answer(request++, bad);
  }
  EXPECT_TRUE(poller_->state().isStale());
  EXPECT_EQ(poller_->state().consecutiveFailures, 3);
  EXPECT_EQ(poller_->state().lastMatch, match("a"));
  mainThread_.advance(Seconds(60));
  answer(request, listing("a"));
  EXPECT_FALSE(poller_->state().isStale());
  EXPECT_EQ(poller_->state().consecutiveFailures, 0);
}

TEST_F(PollerOverHttp, DropsTheAnswerThatWasInFlightWhenPaused) {
  poller_->start();
  ASSERT_TRUE(held_.awaitRequests(1));
  poller_->pause();
  answer(0, listing("old"));
  EXPECT_THAT(seen_, IsEmpty());
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
  poller_->resume();
  answer(1, listing("new"));
  EXPECT_THAT(seen_, ElementsAre("new"));
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(300)));
}

TEST_F(PollerOverHttp, DropsTheAnswerFromBeforeThePauseAlsoAfterResuming) {
  poller_->start();
  ASSERT_TRUE(held_.awaitRequests(1));
  poller_->pause();
  poller_->resume();
  ASSERT_TRUE(held_.awaitRequests(2));
  answer(0, listing("old"));
  EXPECT_THAT(seen_, IsEmpty());
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
  answer(1, listing("new"));
  EXPECT_THAT(seen_, ElementsAre("new"));
}

TEST_F(PollerOverHttp, TakesTheAnswerThatWasInFlightWhenStoppedButPollsNoMore) {
  poller_->start();
  ASSERT_TRUE(held_.awaitRequests(1));
  poller_->stop();
  answer(0, listing("a"));
  EXPECT_THAT(seen_, ElementsAre("a"));
  EXPECT_THAT(mainThread_.delays(), IsEmpty());
}

TEST_F(PollerOverHttp, DestroyingItClosesTheConnectionOfThePollInFlight) {
  poller_->start();
  ASSERT_TRUE(held_.awaitRequests(1));
  poller_.reset();
  EXPECT_TRUE(held_.server().awaitClosed(1));
  mainThread_.runPosted();
  EXPECT_THAT(seen_, IsEmpty());
}

TEST_F(PollerOverHttp, MayGoBeforeAnAnswerThatHasComeIsTaken) {
  poller_->start();
  held_.answer(0, listing("a"));
  ASSERT_TRUE(mainThread_.awaitPost());
  poller_.reset();
  mainThread_.runPosted();
  EXPECT_THAT(seen_, IsEmpty());
}

TEST_F(PollerOverHttp, TwoPollsAtOnceAreTakenInTheOrderOfTheirAnswers) {
  poller_->start();
  ASSERT_TRUE(held_.awaitRequests(1));
  poller_->follow("second");
  ASSERT_TRUE(held_.awaitRequests(2));
  EXPECT_THAT(seen_, ElementsAre("nothing"));
  answer(1, listing("second"));
  EXPECT_EQ(poller_->state().lastMatch, match("second"));
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(60)));
  answer(0, listing("first"));
  EXPECT_THAT(seen_, ElementsAre("nothing", "second", "first"));
  EXPECT_EQ(poller_->state().lastMatch, std::nullopt);
  EXPECT_THAT(mainThread_.delays(), ElementsAre(Seconds(300)));
}

TEST_F(PollerOverHttp, TheEndOfTheSessionIsAFailureLikeAnother) {
  // The fixture's client keeps its session; one of the test's own can end before the poller.
  std::optional<UrlSession> session(mainThread_);
  Poller other(
      {.baseUrl = held_.server().url(""),
       .transport = [&](HttpRequest request) { return session->send(std::move(request)); }},
      mainThread_, store_);
  other.start();
  ASSERT_TRUE(held_.awaitRequests(1));
  session.reset();
  EXPECT_EQ(other.state().consecutiveFailures, 0);
  mainThread_.runPosted();
  EXPECT_EQ(other.state().consecutiveFailures, 1);
}

TEST_F(PollerOverHttp, TheReportOfTheInstallationHoldsNothingUp) {
  TaskScope scope;
  scope.start(client_.reportInstall());
  ASSERT_TRUE(held_.awaitRequests(1));
  poller_->start();
  answer(1, listing("a"));
  EXPECT_THAT(seen_, ElementsAre("a"));
  EXPECT_FALSE(scope.isIdle());
  answer(0, httpAnswer("no", "500 Internal Server Error"));
  EXPECT_TRUE(scope.isIdle());
  EXPECT_THAT(held_.server().requests().at(0),
              testing::StartsWith("POST /api/install HTTP/1.1\r\n"));
}

}  // namespace
}  // namespace kestrow
