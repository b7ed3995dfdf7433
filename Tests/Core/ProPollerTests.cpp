#include "KestrowCore/ProPoller.hpp"
#include "Tests/Core/ProPollerFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestrow {
namespace {

using records::boom;
using records::booms;
using records::ids;
using records::match;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST_F(ProPollerTest, AsksNothingWhileNothingIsFollowed) {
  poller.startUpdate(following(std::nullopt));
  EXPECT_THAT(requests, IsEmpty());
  EXPECT_EQ(changes, 0);
  EXPECT_FALSE(poller.matchId());
  EXPECT_FALSE(poller.hasBaseline());
}

TEST_F(ProPollerTest, WhatHappenedBeforeFollowingIsLoggedAndNeverShown) {
  poller.startUpdate(following("a"));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].matchId, "a");
  EXPECT_FALSE(requests[0].since);
  answerLast(payload(40, booms(1, 40), booms(38, 40)));
  EXPECT_TRUE(poller.hasBaseline());
  EXPECT_EQ(poller.queue(), (BoomQueue{.lastSeenId = 40}));
  EXPECT_FALSE(poller.currentBoom());
  EXPECT_EQ(poller.log().entries, booms(38, 40));
  EXPECT_EQ(changes, 1);

  poller.startUpdate(following("a"));
  EXPECT_EQ(requests[1].since, 40);
  answerLast(payload(41, {boom(41)}));
  EXPECT_EQ(poller.currentBoom(), boom(41));
  EXPECT_EQ(poller.log().entries, booms(38, 41));
  EXPECT_EQ(changes, 2);
}

TEST_F(ProPollerTest, ShowsAlertsOneAfterAnotherOnItsClock) {
  baseline(10);
  poller.startUpdate(following("a"));
  answerLast(payload(12, booms(11, 12)));
  EXPECT_EQ(poller.currentBoom(), boom(11));
  mainThread.advance(Seconds(3.9));
  EXPECT_EQ(poller.currentBoom(), boom(11));
  mainThread.advance(Seconds(0.1));
  EXPECT_EQ(poller.currentBoom(), boom(12));
  EXPECT_EQ(poller.queue().currentStart, mainThread.now());
}

TEST_F(ProPollerTest, AnAlertShowsForItsUsualTimeHoweverTheClockIsSet) {
  Date time = mainThread.now();
  std::vector<Pending<Answer>> answers;
  ProPoller clocked([&](const std::string&,
                        std::optional<std::int64_t>) { return answers.emplace_back().task(); },
                    store, [&] { return time; });
  clocked.startUpdate(following("a"));
  answers[0].complete(payload(0));
  clocked.clockChanged();
  EXPECT_FALSE(clocked.currentBoom());
  clocked.startUpdate(following("a"));
  answers[1].complete(payload(2, booms(1, 2)));
  EXPECT_EQ(clocked.currentBoom(), boom(1));

  time -= std::chrono::hours(1);
  clocked.clockChanged();
  EXPECT_EQ(clocked.queue().currentStart, time);
  const auto start = time;
  time += std::chrono::seconds(3);
  clocked.clockChanged();
  EXPECT_EQ(clocked.queue().currentStart, start);
  EXPECT_EQ(clocked.currentBoom(), boom(1));
  time += std::chrono::seconds(1);
  EXPECT_EQ(clocked.currentBoom(), boom(2));
}

TEST_F(ProPollerTest, EventsTakenIntoTheLogIncludeThoseThatAreNotShown) {
  baseline(0);
  auto late = boom(1);
  late.late = true;
  poller.startUpdate(following("a"));
  answerLast(payload(3, {late, boom(2, BoomKind::other), boom(3, BoomKind::correction)}));
  EXPECT_THAT(ids(poller.log().entries), ElementsAre(1, 2, 3));
  EXPECT_FALSE(poller.currentBoom());
  EXPECT_THAT(poller.log().lines(), ElementsAre("SIX — R Sharma (MI)", "Update — R Sharma (MI)",
                                                "Correction — R Sharma (MI)"));
}

TEST_F(ProPollerTest, RepeatedAndOldEventsAreNotShownAgain) {
  baseline(10);
  poller.startUpdate(following("a"));
  answerLast(payload(11, {boom(11), boom(11)}));
  EXPECT_EQ(poller.currentBoom(), boom(11));
  poller.startUpdate(following("a"));
  answerLast(payload(11, booms(9, 11)));
  mainThread.advance(Seconds(4));
  EXPECT_FALSE(poller.currentBoom());
  EXPECT_THAT(ids(poller.log().entries), ElementsAre(11));
}

TEST_F(ProPollerTest, AnAnswerThatGoesBackInTimeShowsNothingAndKeepsTheHighestId) {
  baseline(40);
  poller.startUpdate(following("a"));
  answerLast(payload(5, booms(1, 5)));
  EXPECT_FALSE(poller.currentBoom());
  EXPECT_EQ(poller.queue().lastSeenId, 40);
  EXPECT_THAT(*store.load().lastEventIdByMatch, ElementsAre(Pair("a", 40)));
  poller.startUpdate(following("a"));
  EXPECT_EQ(requests.back().since, 40);
}

TEST_F(ProPollerTest, ARevisedKeyMomentReplacesItsLine) {
  poller.startUpdate(following("a"));
  answerLast(payload(2, {}, booms(1, 2)));
  auto revised = boom(1, BoomKind::four);
  poller.startUpdate(following("a"));
  answerLast(payload(2, {}, {revised}));
  EXPECT_THAT(poller.log().entries, ElementsAre(revised, boom(2)));
}

TEST_F(ProPollerTest, KeepsTheNextFixtureOfTheLatestAnswer) {
  auto answer = payload(1);
  answer.nextFixture = match("next", MatchPhase::notStarted);
  poller.startUpdate(following("a"));
  answerLast(answer);
  EXPECT_EQ(poller.nextFixture(), match("next", MatchPhase::notStarted));
  poller.startUpdate(following("a"));
  answerLast(payload(1));
  EXPECT_FALSE(poller.nextFixture());
}

TEST_F(ProPollerTest, AMatchThatTheServiceDoesNotKnowChangesNothingButIsTold) {
  baseline(3);
  changes = 0;
  const auto queue = poller.queue();
  const auto file = fileIdentity();
  poller.startUpdate(following("a"));
  answerLast(ProMatchResult(NotFound{}));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(poller.queue(), queue);
  EXPECT_TRUE(poller.hasBaseline());
  EXPECT_EQ(fileIdentity(), file);
}

TEST_F(ProPollerTest, AnUnknownMatchGivesNoBaseline) {
  poller.startUpdate(following("a"));
  answerLast(ProMatchResult(NotFound{}));
  EXPECT_FALSE(poller.hasBaseline());
  EXPECT_FALSE(std::filesystem::exists(store.fileUrl()));
  poller.startUpdate(following("a"));
  EXPECT_FALSE(requests.back().since);
}

TEST_F(ProPollerTest, FailuresAreIgnored) {
  baseline(3);
  changes = 0;
  const std::vector<Answer> failures{
      std::unexpected(TransportError{.description = "no network"}),
      std::unexpected(ScoreClientError{ScoreClientError::Http{500}}),
      std::unexpected(ScoreClientError{ScoreClientError::Decoding{"match: missing"}})};
  for (const auto& failure : failures) {
    poller.startUpdate(following("a"));
    answerLast(failure);
  }
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(poller.queue(), (BoomQueue{.lastSeenId = 3}));
  poller.startUpdate(following("a"));
  EXPECT_EQ(requests.back().since, 3);
}

TEST_F(ProPollerTest, SwitchingTheMatchInFlightDropsTheAnswerAndStartsEmpty) {
  poller.startUpdate(following("a"));
  answerLast(payload(3, {}, booms(1, 3)));
  poller.startUpdate(following("a"));
  const auto old = requests.back().answer;
  poller.startUpdate(following("b"));
  EXPECT_EQ(poller.matchId(), "b");
  EXPECT_EQ(poller.queue(), BoomQueue());
  EXPECT_EQ(poller.log(), KeyMomentsLog());
  EXPECT_FALSE(poller.hasBaseline());
  EXPECT_EQ(requests.back().matchId, "b");
  EXPECT_FALSE(requests.back().since);
  changes = 0;
  old.complete(payload(9, booms(4, 9), booms(1, 9)));
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(poller.queue(), BoomQueue());
  EXPECT_EQ(poller.log(), KeyMomentsLog());
  EXPECT_THAT(*store.load().lastEventIdByMatch, ElementsAre(Pair("a", 3)));
}

TEST_F(ProPollerTest, SwitchingThereAndBackDropsTheFirstAnswer) {
  poller.startUpdate(following("a"));
  const auto old = requests.back().answer;
  poller.startUpdate(following("b"));
  poller.startUpdate(following("a"));
  old.complete(payload(9));
  EXPECT_FALSE(poller.hasBaseline());
  answerLast(payload(10));
  EXPECT_EQ(poller.queue().lastSeenId, 10);
}

TEST_F(ProPollerTest, ANewerRequestSupersedesTheOlderOne) {
  baseline(3);
  poller.startUpdate(following("a"));
  const auto older = requests.back().answer;
  poller.startUpdate(following("a"));
  changes = 0;
  older.complete(payload(4, {boom(4)}));
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(poller.queue().lastSeenId, 3);
  answerLast(payload(4, {boom(4)}));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(poller.currentBoom(), boom(4));
}

TEST_F(ProPollerTest, PausingDropsTheAnswerInFlight) {
  poller.startUpdate(following("a"));
  poller.pause();
  answerLast(payload(3, {}, booms(1, 3)));
  EXPECT_EQ(changes, 0);
  EXPECT_FALSE(poller.hasBaseline());
  EXPECT_EQ(poller.log(), KeyMomentsLog());
  poller.startUpdate(following("a"));
  answerLast(payload(3));
  EXPECT_TRUE(poller.hasBaseline());
}

TEST_F(ProPollerTest, FollowingNothingForgetsTheMatchAndDropsItsAnswer) {
  baseline(3);
  poller.startUpdate(following("a"));
  const auto sent = requests.size();
  poller.startUpdate(following(std::nullopt));
  EXPECT_EQ(requests.size(), sent);
  EXPECT_FALSE(poller.matchId());
  EXPECT_FALSE(poller.hasBaseline());
  changes = 0;
  answerLast(payload(4, {boom(4)}));
  EXPECT_EQ(changes, 0);
}

TEST_F(ProPollerTest, ResettingForgetsEverythingAboutTheMatchBefore) {
  auto answer = payload(3, {}, booms(1, 3));
  answer.nextFixture = match("next");
  poller.startUpdate(following("a", MatchPhase::finished));
  answerLast(answer);
  poller.startUpdate(following("a", MatchPhase::finished));
  changes = 0;
  poller.reset("b");
  answerLast(payload(4));
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(poller.matchId(), "b");
  EXPECT_EQ(poller.queue(), BoomQueue());
  EXPECT_EQ(poller.log(), KeyMomentsLog());
  EXPECT_FALSE(poller.nextFixture());
  EXPECT_FALSE(poller.finishedAt());
  EXPECT_FALSE(poller.hasBaseline());
}

TEST_F(ProPollerTest, DestroyingItAbandonsTheRequestInFlight) {
  std::vector<Pending<Answer>> answers;
  int abandoned = 0;
  {
    ProPoller brief(
        [&](const std::string&, std::optional<std::int64_t>) {
          answers.emplace_back().onAbandoned([&] { ++abandoned; });
          return answers.back().task();
        },
        store, mainThread.clock());
    brief.startUpdate(following("a"));
  }
  EXPECT_EQ(abandoned, 1);
  answers[0].complete(payload(1));
}

TEST_F(ProPollerTest, AnAwaitedUpdateEndsWhenTheAnswerIsTaken) {
  TaskScope scope;
  scope.start(poller.update(following("a")));
  EXPECT_FALSE(scope.isIdle());
  answerLast(payload(1));
  EXPECT_TRUE(scope.isIdle());
}

TEST_F(ProPollerTest, NotesWhenTheMatchWasFirstSeenFinished) {
  poller.startUpdate(following("a"));
  EXPECT_FALSE(poller.finishedAt());
  const auto first = mainThread.now();
  poller.startUpdate(following("a", MatchPhase::finished));
  mainThread.advance(Seconds(60));
  poller.startUpdate(following("a", MatchPhase::finished));
  EXPECT_EQ(poller.finishedAt(), first);
  poller.startUpdate(following("a", MatchPhase::inningsBreak));
  EXPECT_FALSE(poller.finishedAt());
  poller.startUpdate(following("a", MatchPhase::finished));
  EXPECT_EQ(poller.finishedAt(), mainThread.now());
  FollowState unlisted("a");
  poller.startUpdate(unlisted);
  EXPECT_FALSE(poller.finishedAt());
}

TEST_F(ProPollerTest, CountsDownToTheNextFixtureHalfAnHourAfterTheEnd) {
  auto next = match("next", MatchPhase::notStarted);
  next.startTime = mainThread.now() + std::chrono::hours(6);
  auto answer = payload(1);
  answer.nextFixture = next;
  const PillDisplay display{.kind = PillDisplay::Kind::finished};
  poller.startUpdate(following("a", MatchPhase::finished));
  answerLast(answer);
  EXPECT_FALSE(poller.countdown(display));
  mainThread.advance(std::chrono::hours(1));
  EXPECT_TRUE(poller.countdown(display));
  EXPECT_EQ(poller.countdown(display),
            Countdown::parts(display, poller.finishedAt(), poller.nextFixture(), mainThread.now()));
  EXPECT_TRUE(poller.countdownText(display));
  EXPECT_EQ(poller.countdownText(display),
            Countdown::text(display, poller.finishedAt(), poller.nextFixture(), mainThread.now()));
}

TEST(ProPollerWithAClient, AsksTheKeyEventEndpoint) {
  const ManualMainThread mainThread;
  const TemporaryFolder folder;
  LocalStore store(folder.path());
  std::vector<std::string> urls;
  const Transport transport = [&](const HttpRequest& request) {
    urls.push_back(request.url);
    const Pending<std::expected<HttpResponse, TransportError>> pending;
    pending.complete(HttpResponse{
        .body = R"({"match": {"id": "a", "league": "L", "team1": {"name": "A", "short": "A"},
                     "team2": {"name": "B", "short": "B"}, "state": "live", "status": "",
                     "innings": []}, "newestEventId": 7, "events": [], "keyMoments": []})",
        .status = 200});
    return pending.task();
  };
  ProPoller poller({.baseUrl = "http://service", .transport = transport}, store,
                   mainThread.clock());
  poller.startUpdate(following("a"));
  poller.startUpdate(following("a"));
  EXPECT_THAT(urls, ElementsAre("http://service/api/pro/match?id=a",
                                "http://service/api/pro/match?id=a&since=7"));
}

}  // namespace
}  // namespace kestrow
