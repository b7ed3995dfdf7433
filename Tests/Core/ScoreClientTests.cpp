#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "Tests/Support/Records.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestrow {
namespace {

using Answer = std::expected<HttpResponse, TransportError>;

// Keeps each request, and answers when the test says so.
struct HeldTransport {
  std::vector<HttpRequest> requests;
  std::vector<Pending<Answer>> answers;

  Transport transport() {
    return [this](HttpRequest request) {
      requests.push_back(std::move(request));
      return answers.emplace_back().task();
    };
  }

  void answer(int status, std::string body = "") {
    answers.back().complete(HttpResponse{.body = std::move(body), .status = status});
  }
};

template <class T>
Task<void> keep(Task<T> task, std::optional<T>& out) {
  out = co_await task;
}

Task<void> mark(Task<void> task, bool& isDone) {
  co_await task;
  isDone = true;
}

class ScoreClientTest : public testing::Test {
 protected:
  // What the call gives when it is answered so; nothing while it waits.
  template <class T>
  std::optional<FeedResult<T>> resultOf(Task<FeedResult<T>> task, Answer answer) {
    std::optional<FeedResult<T>> result;
    scope_.start(keep(std::move(task), result));
    EXPECT_FALSE(result.has_value());
    held_.answers.back().complete(std::move(answer));
    return result;
  }

  template <class T>
  std::optional<FeedResult<T>> resultOf(Task<FeedResult<T>> task, int status, std::string body) {
    return resultOf(std::move(task), HttpResponse{.body = std::move(body), .status = status});
  }

  std::string urlFor(Task<FeedResult<MatchResponse>> task) {
    std::optional<FeedResult<MatchResponse>> result;
    scope_.start(keep(std::move(task), result));
    held_.answer(500);
    return held_.requests.back().url;
  }

  HeldTransport held_;
  ScoreClient client_{
      .baseUrl = "http://scores.test:80", .installId = {}, .transport = held_.transport()};

 private:
  TaskScope scope_;
};

FeedError httpError(int status) {
  return ScoreClientError{ScoreClientError::Http{.status = status}};
}

bool isDecodingError(const FeedError& error) {
  const auto* answered = std::get_if<ScoreClientError>(&error);
  return answered && std::holds_alternative<ScoreClientError::Decoding>(answered->reason);
}

const MatchesResponse list = records::live({records::match("7")});

TEST_F(ScoreClientTest, GetsTheMatchList) {
  const auto result = resultOf(client_.matches(), 200, encode(list));
  EXPECT_EQ(**result, list);
  const HttpRequest expected{.method = HttpMethod::get, .url = "http://scores.test:80/api/matches"};
  EXPECT_EQ(held_.requests, std::vector{expected});
  EXPECT_EQ(expected.timeout, std::chrono::seconds(20));
}

TEST_F(ScoreClientTest, GetsOneMatch) {
  const MatchResponse response{.match = records::match("7")};
  const auto result = resultOf(client_.match("7"), 200, encode(response));
  EXPECT_EQ(**result, response);
  const HttpRequest expected{.url = "http://scores.test:80/api/match?id=7"};
  EXPECT_EQ(held_.requests, std::vector{expected});
}

TEST_F(ScoreClientTest, EscapesTheMatchIdInTheQuery) {
  const std::string base = "http://scores.test:80/api/match?id=";
  EXPECT_EQ(urlFor(client_.match("a b")), base + "a%20b");
  EXPECT_EQ(urlFor(client_.match("a&b=c+d#e%f")), base + "a%26b%3Dc%2Bd%23e%25f");
  EXPECT_EQ(urlFor(client_.match("\u00e9/?\"\x7f")), base + "%C3%A9%2F%3F%22%7F");
  EXPECT_EQ(urlFor(client_.match("AZaz09-._~")), base + "AZaz09-._~");
  EXPECT_EQ(urlFor(client_.match("")), base);
}

TEST_F(ScoreClientTest, PutsThePathBehindTheBaseUrlWithOneSlash) {
  client_.baseUrl = "https://scores.test/below/";
  EXPECT_EQ(urlFor(client_.match("1")), "https://scores.test/below/api/match?id=1");
}

TEST_F(ScoreClientTest, TakesEveryStatusFrom200To299AsSuccess) {
  for (const int status : {200, 201, 299}) {
    EXPECT_EQ(**resultOf(client_.matches(), status, encode(list)), list) << status;
  }
  for (const int status : {0, -1, 100, 199, 300, 304, 404, 500}) {
    EXPECT_EQ(resultOf(client_.matches(), status, encode(list))->error(), httpError(status));
    EXPECT_EQ(resultOf(client_.match("7"), status, "{}")->error(), httpError(status));
  }
}

TEST_F(ScoreClientTest, FailsToDecodeA204WithAnEmptyBody) {
  EXPECT_TRUE(isDecodingError(resultOf(client_.matches(), 204, "")->error()));
}

TEST_F(ScoreClientTest, PassesTransportErrorsOnUnchanged) {
  const TransportError error{.description = "no network"};
  const auto answer = Answer(std::unexpected(error));
  EXPECT_EQ(resultOf(client_.matches(), answer)->error(), FeedError(error));
  EXPECT_EQ(resultOf(client_.match("7"), answer)->error(), FeedError(error));
  EXPECT_EQ(resultOf(client_.keyEvents("7", 1), answer)->error(), FeedError(error));
}

TEST_F(ScoreClientTest, TellsWhereDecodingFailed) {
  const auto error = resultOf(client_.matches(), 200, R"({"updatedAt":"2026-04-12"})")->error();
  const ScoreClientError expected{
      ScoreClientError::Decoding{.description = "updatedAt: Bad date 2026-04-12"}};
  EXPECT_EQ(error, FeedError(expected));
}

TEST_F(ScoreClientTest, GetsKeyEventsFromTheStartOrSinceAnId) {
  const ProMatchPayload payload{
      .match = records::match("7"), .newestEventId = 3, .events = records::booms(1, 3)};
  const auto result = resultOf(client_.keyEvents("a b", std::nullopt), 200, encode(payload));
  EXPECT_EQ(**result, ProMatchResult(payload));
  EXPECT_TRUE(resultOf(client_.keyEvents("7", -12), 200, encode(payload))->has_value());
  const HttpRequest fromStart{.url = "http://scores.test:80/api/pro/match?id=a%20b"};
  const HttpRequest since{.url = "http://scores.test:80/api/pro/match?id=7&since=-12"};
  EXPECT_EQ(held_.requests, (std::vector{fromStart, since}));
  EXPECT_EQ(fromStart.method, HttpMethod::get);
}

TEST_F(ScoreClientTest, TellsAMatchWithoutKeyEventsFromAFailure) {
  EXPECT_EQ(**resultOf(client_.keyEvents("7", 1), 404, "no JSON"), ProMatchResult(NotFound{}));
  for (const int status : {0, 199, 201, 204, 300, 403, 405, 500}) {
    EXPECT_EQ(resultOf(client_.keyEvents("7", 1), status, "{}")->error(), httpError(status));
  }
  EXPECT_TRUE(isDecodingError(resultOf(client_.keyEvents("7", 1), 200, "{}")->error()));
}

TEST_F(ScoreClientTest, ReportsTheInstallationAndIgnoresTheAnswer) {
  client_.installId = "abc-1";
  const std::vector<Answer> answers{HttpResponse{.body = "x", .status = 500},
                                    std::unexpected(TransportError{.description = "gone"})};
  for (const auto& answer : answers) {
    bool isDone = false;
    TaskScope scope;
    scope.start(mark(client_.reportInstall(), isDone));
    EXPECT_FALSE(isDone);
    held_.answers.back().complete(answer);
    EXPECT_TRUE(isDone);
  }
  const HttpRequest expected{.method = HttpMethod::post,
                             .url = "http://scores.test:80/api/install",
                             .headers = {{"x-install-id", "abc-1"}}};
  EXPECT_EQ(held_.requests, (std::vector{expected, expected}));
}

TEST_F(ScoreClientTest, ReportsNothingWithoutAnIdThatAHeaderCanHold) {
  for (const std::optional<std::string>& id :
       {std::optional<std::string>(), std::optional<std::string>("a\r\nb: c"),
        std::optional<std::string>("\x1f"), std::optional<std::string>("\x7f")}) {
    client_.installId = id;
    bool isDone = false;
    TaskScope scope;
    scope.start(mark(client_.reportInstall(), isDone));
    EXPECT_TRUE(isDone);
  }
  EXPECT_TRUE(held_.requests.empty());
  client_.installId = " \u00e9";
  bool isDone = false;
  TaskScope scope;
  scope.start(mark(client_.reportInstall(), isDone));
  EXPECT_EQ(held_.requests.size(), 1U);
}

TEST_F(ScoreClientTest, IsNotNeededAnyMoreOnceARequestIsUnderWay) {
  std::optional<FeedResult<MatchesResponse>> matches;
  std::optional<FeedResult<ProMatchResult>> events;
  TaskScope scope;
  {
    const ScoreClient shortLived{
        .baseUrl = "http://b", .installId = {}, .transport = held_.transport()};
    scope.start(keep(shortLived.matches(), matches));
    scope.start(keep(shortLived.keyEvents(std::string(100, 'k'), 1), events));
  }
  held_.answers[0].complete(HttpResponse{.body = encode(list), .status = 200});
  held_.answers[1].complete(HttpResponse{.body = "", .status = 404});
  EXPECT_EQ(**matches, list);
  EXPECT_EQ(**events, ProMatchResult(NotFound{}));
}

TEST_F(ScoreClientTest, AnswersEachRequestByItself) {
  std::optional<FeedResult<MatchesResponse>> first;
  std::optional<FeedResult<MatchesResponse>> second;
  TaskScope scope;
  scope.start(keep(client_.matches(), first));
  scope.start(keep(client_.matches(), second));
  held_.answers[1].complete(HttpResponse{.body = encode(list), .status = 200});
  EXPECT_FALSE(first.has_value());
  EXPECT_EQ(**second, list);
  held_.answers[0].complete(HttpResponse{.body = "", .status = 500});
  EXPECT_EQ(first->error(), httpError(500));
}

TEST(ScoreClient, AsksTheBuiltInServiceByDefault) {
  const ScoreClient client;
  EXPECT_EQ(client.baseUrl, ScoreClient::defaultBaseUrl);
  EXPECT_TRUE(client.baseUrl.starts_with("http"));
  EXPECT_FALSE(client.baseUrl.ends_with('/'));
}

TEST(ScoreClient, DecodesAnyOfItsAnswers) {
  EXPECT_EQ(ScoreClient::decode<MatchesResponse>("{}"), MatchesResponse{});
  EXPECT_EQ(ScoreClient::decode<MatchResponse>("{}"), MatchResponse{});
  const ScoreClientError expected{ScoreClientError::Decoding{.description = "match: missing"}};
  EXPECT_EQ(ScoreClient::decode<ProMatchPayload>("{}").error(), expected);
}

}  // namespace
}  // namespace kestrow
