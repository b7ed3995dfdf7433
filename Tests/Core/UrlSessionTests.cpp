#include "KestrowCore/UrlSession.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/RawHttpServer.hpp"
#include "Tests/Support/UrlSessionFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Connection = RawHttpServer::Connection;

class UrlSessionTest : public UrlSessionFixture {};

TEST_F(UrlSessionTest, GivesBodyAndStatus) {
  const RawHttpServer server(answering(httpAnswer("hello")));
  EXPECT_EQ(fetch(server.url("/api/matches?x=1")), (HttpResponse{.body = "hello", .status = 200}));
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(server.requests()[0], AllOf(StartsWith("GET /api/matches?x=1 HTTP/1.1\r\n"),
                                          ContainsRegex("\r\nUser-Agent: Kestrow/[0-9.]+\r\n"),
                                          ContainsRegex("\r\nAccept-Encoding: [a-z, ]*gzip")));
}

TEST_F(UrlSessionTest, GivesAnswersThatAreNoSuccessAsTheyAre) {
  for (const auto& [status, code] : {std::pair{"204 No Content", 204}, {"304 Not Modified", 304}}) {
    const RawHttpServer server(answering(std::string("HTTP/1.1 ") + status + "\r\n\r\n"));
    EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "", .status = code}));
  }
  for (const auto& [status, code] :
       {std::pair{"404 Not Found", 404}, {"500 Internal Server Error", 500}, {"299 Odd", 299}}) {
    const RawHttpServer server(answering(httpAnswer("<html>why", status)));
    EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "<html>why", .status = code}));
  }
}

TEST_F(UrlSessionTest, KeepsEveryByteOfTheBody) {
  std::string body(256, '\0');
  std::iota(body.begin(), body.end(), '\0');
  const RawHttpServer server(answering(httpAnswer(body)));
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = body, .status = 200}));
}

TEST_F(UrlSessionTest, PostsAnEmptyBodyWithItsLengthAndHeaders) {
  const RawHttpServer server(answering(httpAnswer("")));
  const HttpRequest request{.method = HttpMethod::post,
                            .url = server.url("/api/install"),
                            .headers = {{"x-install-id", "AB-12"}, {"x-empty", ""}},
                            .body = ""};
  EXPECT_TRUE(fetch(request).has_value());
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(
      server.requests()[0],
      AllOf(StartsWith("POST /api/install HTTP/1.1\r\n"), HasSubstr("\r\nx-install-id: AB-12\r\n"),
            HasSubstr("\r\nx-empty:\r\n"), HasSubstr("\r\nContent-Length: 0\r\n"),
            Not(HasSubstr("Content-Type")), Not(HasSubstr("Expect"))));
}

TEST_F(UrlSessionTest, PostsABodyAsItIs) {
  const RawHttpServer server(answering(httpAnswer("")));
  const std::string body = std::string(2 << 20, 'x') + '\0' + "end";
  EXPECT_TRUE(fetch({.method = HttpMethod::post, .url = server.url(), .headers = {}, .body = body})
                  .has_value());
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(server.requests()[0], Not(HasSubstr("Expect")));
  EXPECT_TRUE(server.requests()[0].ends_with("\r\n\r\n" + body));
}

TEST_F(UrlSessionTest, RefusesToSendWhatCouldSmuggleInAHeader) {
  const RawHttpServer server(answering(httpAnswer("")));
  EXPECT_EQ(fetch({.url = server.url(), .headers = {{"x-install-id", "a\r\nx-more: b"}}}),
            std::unexpected(TransportError{"The header x-install-id holds control characters"}));
  EXPECT_FALSE(fetch(server.url("/a\r\nHost: b")).has_value());
  EXPECT_FALSE(fetch(server.url("/a b")).has_value());
  EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(UrlSessionTest, AsksHttpOnly) {
  for (const char* url : {"file:///etc/hostname", "ftp://127.0.0.1/x", "", "nonsense://x"}) {
    EXPECT_FALSE(fetch(url).has_value()) << url;
  }
}

TEST_F(UrlSessionTest, FailsWhereTheLibraryRefusesTheRequest) {
  const auto result = fetch("http://127.0.0.1/" + std::string(8'000'001, 'x'));
  ASSERT_FALSE(result.has_value());
  EXPECT_NE(result.error().description, "the test's patience is at its end");
  // The refusal itself is told, not what sending a request without an address comes to.
  EXPECT_THAT(result.error().description, testing::Not(testing::HasSubstr("URL")));
}

TEST_F(UrlSessionTest, KeepsConnectionsButNoCookiesAndNoCache) {
  const RawHttpServer server(answering(httpAnswer(
      "x", "200 OK", "Set-Cookie: id=1\r\nETag: \"e\"\r\nCache-Control: max-age=99\r\n")));
  EXPECT_TRUE(fetch(server.url()).has_value());
  EXPECT_TRUE(fetch(server.url()).has_value());
  EXPECT_EQ(server.connectionCount(), 1);
  ASSERT_EQ(server.requests().size(), 2U);
  EXPECT_EQ(server.requests()[0], server.requests()[1]);
  EXPECT_THAT(server.requests()[1], Not(HasSubstr("ookie")));
}

TEST_F(UrlSessionTest, AsksAgainOnANewConnectionWhenTheKeptOneHasClosed) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    connection.write(httpAnswer("x"));
  });
  EXPECT_TRUE(fetch(server.url()).has_value());
  EXPECT_TRUE(fetch(server.url()).has_value());
  EXPECT_EQ(server.connectionCount(), 2);
}

TEST_F(UrlSessionTest, SendsManyAtOnceAndGivesTheAnswersAsTheyComplete) {
  constexpr std::size_t count = 24;
  std::vector<std::promise<void>> gates(count);
  std::vector<std::shared_future<void>> open(count);
  std::ranges::transform(gates, open.begin(), [](auto& gate) { return gate.get_future().share(); });
  const RawHttpServer server([&](Connection& connection) {
    const std::string request = connection.readRequest();
    const std::size_t which = std::stoul(request.substr(std::string("GET /").size()));
    open[which].wait_for(std::chrono::duration_cast<milliseconds>(patience));
    connection.write(httpAnswer(std::to_string(which)));
  });
  std::vector<std::string> answers;
  TaskScope scope;
  for (std::size_t i = 0; i < count; ++i) {
    scope.start(appendBody(session().send({.url = server.url("/" + std::to_string(i))}), answers));
  }
  ASSERT_TRUE(server.awaitRequests(count));
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), 0);
  std::ranges::shuffle(order, std::mt19937(1));
  std::vector<std::string> expected;
  for (const std::size_t which : order) {
    gates[which].set_value();
    expected.push_back(std::to_string(which));
    ASSERT_TRUE(loop().runUntil([&] { return answers.size() == expected.size(); }, patience));
    ASSERT_EQ(answers, expected);
  }
}

TEST_F(UrlSessionTest, SaysThatAConnectionWasRefused) {
  std::string url;
  {
    const RawHttpServer gone(answering(""));
    url = gone.url();
  }
  const auto result = fetch(url);
  ASSERT_FALSE(result.has_value());
  EXPECT_FALSE(result.error().description.empty());
}

TEST_F(UrlSessionTest, ATransportKeepsItsSession) {
  const RawHttpServer server(answering(httpAnswer("hello")));
  const Transport transport = urlSessionTransport(std::make_shared<UrlSession>(loop()));
  EXPECT_EQ(await(transport({.url = server.url()})),
            (HttpResponse{.body = "hello", .status = 200}));
}

// Time. libcurl counts in whole milliseconds and may be up to one early.

TEST_F(UrlSessionTest, FailsWhenNoAnswerComesInTime) {
  const RawHttpServer server([](Connection& connection) { connection.awaitClose(); });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(fetch({.url = server.url(), .timeout = milliseconds(60)}).has_value());
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(59));
  EXPECT_LT(std::chrono::steady_clock::now() - start, patience);
}

TEST_F(UrlSessionTest, TheTimeIsForTheWholeAnswerHoweverBusyTheServerIs) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
    while (connection.pause(milliseconds(10)) && connection.write("x")) continue;
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(fetch({.url = server.url(), .timeout = milliseconds(150)}).has_value());
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(149));
  EXPECT_LT(std::chrono::steady_clock::now() - start, patience);
}

TEST_F(UrlSessionTest, ATimeOfNothingIsOverAtOnceRatherThanNever) {
  const RawHttpServer server([](Connection& connection) { connection.awaitClose(); });
  EXPECT_FALSE(fetch({.url = server.url(), .timeout = milliseconds(0)}).has_value());
  EXPECT_FALSE(fetch({.url = server.url(), .timeout = milliseconds(-1)}).has_value());
}

TEST_F(UrlSessionTest, TakesASlowAnswerThatIsInTime) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    for (const char c : httpAnswer("slow")) {
      connection.write(std::string_view(&c, 1));
      connection.pause(milliseconds(1));
    }
  });
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "slow", .status = 200}));
}

// Going early

TEST_F(UrlSessionTest, DestroyingTheTaskClosesTheConnection) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    connection.awaitClose();
  });
  std::optional<Result> result;
  {
    TaskScope scope;
    scope.start(keep(session().send({.url = server.url()}), result));
    ASSERT_TRUE(server.awaitRequests(1));
  }
  EXPECT_TRUE(server.awaitClosed(1));
  EXPECT_FALSE(result.has_value());
}

TEST_F(UrlSessionTest, ATaskThatIsNeverAwaitedSendsNothing) {
  const RawHttpServer server(answering(httpAnswer("x")));
  {
    const auto task = session().send({.url = server.url("/never")});
  }
  EXPECT_TRUE(fetch(server.url("/sent")).has_value());
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(UrlSessionTest, DestroyingTheSessionEndsWhatIsUnderWay) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    connection.awaitClose();
  });
  std::optional<Result> result;
  TaskScope scope;
  scope.start(keep(session().send({.url = server.url()}), result));
  ASSERT_TRUE(server.awaitRequests(1));
  endSession();
  EXPECT_TRUE(server.awaitClosed(1));
  EXPECT_FALSE(result.has_value()) << "answered from inside the destructor";
  ASSERT_TRUE(loop().runUntil([&] { return result.has_value(); }, patience));
  EXPECT_EQ(*result, std::unexpected(TransportError{"The session has ended"}));
}

TEST_F(UrlSessionTest, ATaskMayBeAwaitedAfterTheSessionHasGone) {
  auto task = session().send({.url = "http://127.0.0.1:9/"});
  endSession();
  EXPECT_EQ(await(std::move(task)), std::unexpected(TransportError{"The session has ended"}));
}

TEST_F(UrlSessionTest, TheSessionMayGoWhileAnAnswerIsBeingTaken) {
  const RawHttpServer server(answering(httpAnswer("x")));
  std::optional<Result> first;
  std::optional<Result> second;
  TaskScope scope;
  scope.start(keep(session().send({.url = server.url()}), first, [&] { endSession(); }));
  scope.start(keep(session().send({.url = server.url()}), second));
  ASSERT_TRUE(loop().runUntil([&] { return first && second; }, patience));
  EXPECT_TRUE(first->has_value());
}

TEST_F(UrlSessionTest, TheSessionMayGoBeforeAnAnswerIsTaken) {
  const RawHttpServer server(answering(httpAnswer("x")));
  ManualMainThread mainThread;
  std::optional<UrlSession> session(mainThread);
  std::optional<Result> result;
  TaskScope scope;
  scope.start(keep(session->send({.url = server.url()}), result));
  ASSERT_TRUE(mainThread.awaitPost());
  session.reset();
  EXPECT_FALSE(result.has_value());
  mainThread.runPosted();
  EXPECT_EQ(result, std::unexpected(TransportError{"The session has ended"}));
}

TEST_F(UrlSessionTest, TheTaskMayGoBeforeItsAnswerIsTaken) {
  const RawHttpServer server(answering(httpAnswer("x")));
  ManualMainThread mainThread;
  UrlSession session(mainThread);
  std::optional<Result> result;
  {
    TaskScope scope;
    scope.start(keep(session.send({.url = server.url()}), result));
    ASSERT_TRUE(mainThread.awaitPost());
  }
  mainThread.runPosted();
  EXPECT_FALSE(result.has_value());
}

TEST_F(UrlSessionTest, RequestsMayComeAndGoInAnyOrder) {
  const RawHttpServer server([](Connection& connection) {
    while (!connection.readRequest().empty()) connection.write(httpAnswer("x"));
  });
  std::mt19937 random(7);
  int answered = 0;
  for (int round = 0; round < 60; ++round) {
    std::vector<std::optional<Result>> results(4);
    std::vector<std::unique_ptr<TaskScope>> scopes;
    for (auto& result : results) {
      scopes.push_back(std::make_unique<TaskScope>());
      scopes.back()->start(keep(session().send({.url = server.url()}), result));
    }
    const std::size_t early = random() % 5;
    if (early < 4) scopes[early].reset();
    const auto isDone = [&] {
      std::size_t count = early < 4 ? 1U : 0U;
      for (const auto& result : results) count += result ? 1U : 0U;
      return count >= 4;
    };
    if (random() % 2 == 0) {
      ASSERT_TRUE(loop().runUntil(isDone, patience));
      ++answered;
    }
    scopes.clear();
    if (random() % 5 == 0) renewSession();
  }
  EXPECT_GT(answered, 0);
}

}  // namespace
}  // namespace kestrow
