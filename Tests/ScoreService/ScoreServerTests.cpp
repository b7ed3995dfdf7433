#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/JsonRecord.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "ScoreService/Feeds.hpp"
#include "ScoreService/ScoreServer.hpp"

#include <gtest/gtest.h>
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kestrow::service {
namespace {

using namespace std::chrono_literals;

// A server with a clock that the test sets.
class ScoreServerTest : public testing::Test {
 protected:
  void start(const std::vector<const char*>& faults = {}) {
    ServerSettings settings;
    for (const char* fault : faults) settings.faults.push_back(*parseFault(fault));
    auto started = ScoreServer::start(feed_, [this] { return now_.load(); }, std::move(settings));
    ASSERT_TRUE(started.has_value()) << started.error();
    server_ = *std::move(started);
    client_ = std::make_unique<httplib::Client>(server_->url());
    client_->set_read_timeout(10s);
  }

  httplib::Result get(const std::string& path) { return client_->Get(path); }

  template <class T>
  T record(const std::string& path) {
    const auto result = get(path);
    EXPECT_TRUE(result);
    if (!result) return {};
    EXPECT_EQ(result->status, 200);
    EXPECT_EQ(result->get_header_value("Content-Type"), "application/json");
    auto decoded = json::decode<T>(result->body);
    EXPECT_TRUE(decoded.has_value()) << decoded.error().description();
    return decoded.value_or(T{});
  }

  const Date origin_ = *parseInternetDate("2026-04-12T14:20:00Z");
  const MatchFeed feed_ =
      simulatedFeed(3, {.start = {StartPoint::Stage::firstInnings, 48}}, origin_);
  std::atomic<Date> now_ = origin_;
  std::unique_ptr<ScoreServer> server_;
  std::unique_ptr<httplib::Client> client_;
};

TEST_F(ScoreServerTest, GivesTheListAsItIsAtTheClocksTime) {
  start();
  EXPECT_EQ(record<MatchesResponse>("/api/matches"), feed_.matches(origin_));
  now_ = origin_ + 30min;
  EXPECT_EQ(record<MatchesResponse>("/api/matches"), feed_.matches(origin_ + 30min));
}

TEST_F(ScoreServerTest, GivesOneMatchOrNone) {
  start();
  EXPECT_EQ(record<MatchResponse>("/api/match?id=match-2"), feed_.match("match-2", origin_));
  EXPECT_EQ(record<MatchResponse>("/api/match?id=nobody").match, std::nullopt);
}

TEST_F(ScoreServerTest, GivesKeyEventsSinceAnId) {
  start();
  const auto all = record<ProMatchPayload>("/api/pro/match?id=match-1");
  EXPECT_EQ(all, feed_.keyEvents("match-1", std::nullopt, origin_));
  const std::string since = std::to_string(all.events.at(1).id);
  EXPECT_EQ(record<ProMatchPayload>("/api/pro/match?id=match-1&since=" + since).events.size(),
            all.events.size() - 2);
}

TEST_F(ScoreServerTest, AnIdIsDecodedBeforeItIsLookedUp) {
  start();
  EXPECT_TRUE(record<MatchResponse>("/api/match?id=match%2D2").match.has_value());
  EXPECT_FALSE(record<MatchResponse>("/api/match?id=match+2").match.has_value());
}

TEST_F(ScoreServerTest, RefusesWhatItDoesNotUnderstand) {
  start();
  EXPECT_EQ(get("/api/pro/match?id=nobody")->status, 404);
  EXPECT_EQ(get("/api/pro/match")->status, 400);
  EXPECT_EQ(get("/api/pro/match?id=match-1&since=")->status, 400);
  EXPECT_EQ(get("/api/pro/match?id=match-1&since=1.5")->status, 400);
  EXPECT_EQ(get("/api/pro/match?id=match-1&since=99999999999999999999")->status, 400);
  EXPECT_EQ(get("/api/match")->status, 400);
  EXPECT_EQ(get("/")->status, 404);
  EXPECT_EQ(get("/api/matches/")->status, 404);
  EXPECT_EQ(get("/api/install")->status, 404);
  EXPECT_EQ(get("/api/match")->body, R"({"error":"id is missing"})");
}

TEST_F(ScoreServerTest, OddQueriesDoNoHarm) {
  start();
  for (const char* query :
       {"?", "?&&&", "?id", "?id=&id=match-1", "?id=%", "?id=%zz", "?id=%00", "?id=%ff%fe",
        "?since=-9223372036854775808&id=match-1", "?=x&id=%F0%9F"}) {
    EXPECT_TRUE(get("/api/match" + std::string(query))) << query;
    EXPECT_TRUE(get("/api/pro/match" + std::string(query))) << query;
  }
  EXPECT_TRUE(get("/api/match?id=" + std::string(8000, 'x')));
  const auto tooLong = get("/api/match?id=" + std::string(20000, 'x'));
  EXPECT_TRUE(!tooLong || tooLong->status == 414);
  EXPECT_EQ(get("/api/matches")->status, 200);
}

TEST_F(ScoreServerTest, CountsTheInstallationsReportedToIt) {
  start();
  EXPECT_EQ(client_->Post("/api/install", {{"x-install-id", "abc"}}, "", "text/plain")->status,
            204);
  EXPECT_EQ(client_->Post("/api/install")->status, 400);
  EXPECT_EQ(server_->installCount(), 1);
}

TEST_F(ScoreServerTest, RefusesABodyThatIsTooLong) {
  start();
  const auto posted = client_->Post("/api/install", {{"x-install-id", "abc"}},
                                    std::string(100'000, 'x'), "text/plain");
  EXPECT_TRUE(!posted || posted->status == 413);
  EXPECT_EQ(server_->installCount(), 0);
  EXPECT_EQ(get("/api/matches")->status, 200);
}

TEST_F(ScoreServerTest, AnswersManyClientsAtOnce) {
  start();
  std::atomic<int> good = 0;
  std::vector<std::thread> threads;
  threads.reserve(24);
  for (int i = 0; i < 24; ++i) {
    threads.emplace_back([&] {
      httplib::Client client(server_->url());
      for (int request = 0; request < 10; ++request) {
        const auto result = client.Get("/api/pro/match?id=match-1");
        if (result && result->status == 200) ++good;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(good, 240);
  EXPECT_EQ(server_->requestCount(), 240);
}

TEST_F(ScoreServerTest, APortThatIsTakenIsToldInOneLine) {
  start();
  const auto second = ScoreServer::start(feed_, systemNow, {.port = server_->port()});
  ASSERT_FALSE(second.has_value());
  EXPECT_EQ(second.error().find("can't listen on 127.0.0.1:" + std::to_string(server_->port())),
            0U);
  EXPECT_EQ(second.error().find('\n'), std::string::npos);
}

TEST_F(ScoreServerTest, AnAddressThatIsNotOursIsToldInOneLine) {
  for (const char* address : {"192.0.2.1", "not an address"}) {
    const auto server = ScoreServer::start(feed_, systemNow, {.address = address});
    ASSERT_FALSE(server.has_value()) << address;
    EXPECT_EQ(server.error().find("can't listen on " + std::string(address) + ":0"), 0U);
  }
}

TEST_F(ScoreServerTest, StopsAtOnceFreesItsPortAndMayBeStoppedTwice) {
  start({"latency=600@/api/match", "drip=600@/api/pro/match"});
  std::thread waiting([&] { httplib::Client(server_->url()).Get("/api/match?id=match-1"); });
  std::thread dripping([&] { httplib::Client(server_->url()).Get("/api/pro/match?id=match-1"); });
  while (server_->requestCount() < 2) std::this_thread::yield();
  const int port = server_->port();
  server_->stop();
  server_->stop();
  waiting.join();
  dripping.join();
  EXPECT_FALSE(get("/api/matches"));
  EXPECT_TRUE(ScoreServer::start(feed_, systemNow, {.port = port}).has_value());
}

TEST_F(ScoreServerTest, AStatusFaultAnswersWithThatStatusWhenItIsDue) {
  start({"status=503@every:2"});
  EXPECT_EQ(get("/api/matches")->status, 200);
  EXPECT_EQ(get("/api/matches")->status, 503);
  EXPECT_EQ(get("/api/matches")->status, 200);
}

TEST_F(ScoreServerTest, AStatusThatHasNoBodyComesWithoutOne) {
  start({"status=204@first:1", "status=304@first:2"});
  client_->set_keep_alive(true);
  for (const int status : {204, 304}) {
    const auto result = get("/api/matches");
    EXPECT_EQ(result->status, status);
    EXPECT_EQ(result->get_header_value("Content-Length"), "0");
    EXPECT_EQ(result->body, "");
  }
  EXPECT_EQ(get("/api/matches")->status, 200);
}

TEST_F(ScoreServerTest, AFaultKeepsToItsPath) {
  start({"status=500@/api/pro/match"});
  EXPECT_EQ(get("/api/matches")->status, 200);
  EXPECT_EQ(get("/api/pro/match?id=match-1")->status, 500);
}

TEST_F(ScoreServerTest, ADroppedConnectionEndsWithoutAnAnswer) {
  start({"drop@first:1"});
  const auto dropped = get("/api/matches");
  ASSERT_FALSE(dropped);
  EXPECT_EQ(dropped.error(), httplib::Error::Read);
  EXPECT_EQ(get("/api/matches")->status, 200);
}

TEST_F(ScoreServerTest, ATruncatedBodyEndsHalfWay) {
  start({"truncate@first:1"});
  std::string received;
  const auto result = client_->Get("/api/matches", [&](const char* data, std::size_t size) {
    received.append(data, size);
    return true;
  });
  EXPECT_FALSE(result);
  const std::string whole = get("/api/matches")->body;
  EXPECT_EQ(received, whole.substr(0, whole.size() / 2));
}

TEST_F(ScoreServerTest, GarbageIsAGoodAnswerWithABadBody) {
  start({"garbage"});
  const auto result = get("/api/matches");
  EXPECT_EQ(result->status, 200);
  EXPECT_FALSE(json::decode<MatchesResponse>(result->body).has_value());
}

TEST_F(ScoreServerTest, AnOversizedBodyIsGoodJsonOfExactlyThatLength) {
  start({"oversize=200000@first:1", "oversize"});
  const auto result = get("/api/matches");
  EXPECT_EQ(result->body.size(), 200000U);
  EXPECT_TRUE(json::decode<MatchesResponse>(result->body).has_value());
  EXPECT_EQ(get("/api/matches")->body.size(), (std::size_t{4} << 20U) + 1);
}

TEST_F(ScoreServerTest, ADripBringsTheWholeBodyPieceByPiece) {
  start({"drip=0.001@first:1"});
  const std::string dripped = get("/api/match?id=match-4")->body;
  EXPECT_EQ(dripped, get("/api/match?id=match-4")->body);
}

TEST_F(ScoreServerTest, LatencyHoldsTheAnswerBack) {
  start({"latency=0.05"});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(get("/api/matches")->status, 200);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 50ms);
}

TEST_F(ScoreServerTest, ARedirectLeadsElsewhere) {
  start({"redirect=/api/match?id=match-1@/api/matches"});
  const auto result = get("/api/matches");
  EXPECT_EQ(result->status, 302);
  EXPECT_EQ(result->get_header_value("Location"), "/api/match?id=match-1");
  EXPECT_TRUE(result->body.empty());
}

TEST_F(ScoreServerTest, ListensOnOtherAddressesToo) {
  const auto server = ScoreServer::start(feed_, systemNow, {.address = "::1"});
  if (!server) GTEST_SKIP() << "no IPv6 here: " << server.error();
  EXPECT_EQ((*server)->url(), "http://[::1]:" + std::to_string((*server)->port()));
  EXPECT_EQ(httplib::Client("::1", (*server)->port()).Get("/api/matches")->status, 200);
}

}  // namespace
}  // namespace kestrow::service
