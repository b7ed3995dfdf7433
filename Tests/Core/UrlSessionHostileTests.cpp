// Servers that fail or mean harm.
#include "KestrowCore/UrlSession.hpp"
#include "Tests/Support/RawHttpServer.hpp"
#include "Tests/Support/UrlSessionFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace kestrow {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::StartsWith;

using Connection = RawHttpServer::Connection;

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

class HostileServer : public UrlSessionFixture {
 protected:
  static void expectError(const Result& result, std::string_view part) {
    ASSERT_FALSE(result.has_value());
    EXPECT_THAT(result.error().description, HasSubstr(part));
  }

  // Asks a server whose answer breaks off after so many bytes.
  Result fetchCutOff(const std::string& answer, std::size_t length, bool byReset) {
    const RawHttpServer server([&](Connection& connection) {
      connection.readRequest();
      connection.write(std::string_view(answer).substr(0, length));
      if (byReset) connection.reset();
    });
    return fetch(server.url());
  }

  // Cuts the answer after 0, 1, … bytes, up to and without the given length.
  void expectErrorWhereverCutOff(const std::string& answer, std::size_t end) {
    for (const bool byReset : {false, true}) {
      for (std::size_t length = 0; length < end; ++length) {
        EXPECT_FALSE(fetchCutOff(answer, length, byReset).has_value())
            << "after " << length << " bytes" << (byReset ? ", reset" : "");
      }
    }
    EXPECT_EQ(fetchCutOff(answer, answer.size(), false),
              (HttpResponse{.body = "hello", .status = 200}));
  }
};

TEST_F(HostileServer, AnAnswerThatBreaksOffAnywhereIsAnError) {
  const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nX: y\r\n\r\nhello";
  expectErrorWhereverCutOff(answer, answer.size());
}

TEST_F(HostileServer, AnAnswerInPiecesThatBreaksOffAnywhereIsAnError) {
  const std::string answer =
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nhe\r\n3\r\nllo\r\n0\r\n\r\n";
  // The last line feed decides nothing: what comes before it ends the last piece.
  expectErrorWhereverCutOff(answer, answer.size() - 1);
}

TEST_F(HostileServer, AnInterimAnswerIsNone) {
  const std::string answer =
      "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Hints\r\n\r\n"
      "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello";
  expectErrorWhereverCutOff(answer, answer.size());
}

TEST_F(HostileServer, WhatComesAfterTheAnnouncedLengthIsNoPartOfTheBody) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nhello");
  });
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "he", .status = 200}));
}

TEST_F(HostileServer, RefusesLengthsThatAreNone) {
  for (const char* length : {"-5", "99999999999999999999999", "five"}) {
    const RawHttpServer server(
        answering("HTTP/1.1 200 OK\r\nContent-Length: " + std::string(length) + "\r\n\r\nhello"));
    EXPECT_FALSE(fetch(server.url()).has_value()) << length;
  }
}

TEST_F(HostileServer, TakesABodyOfFourMebibytesAndNotAByteMore) {
  const std::string body(4 * mebibyte, 'x');
  {
    const RawHttpServer server(answering(httpAnswer(body)));
    const Result result = fetch(server.url());
    ASSERT_TRUE(result.has_value()) << result.error().description;
    EXPECT_TRUE(result->body == body);
  }
  // Without a length, so that the bytes themselves are counted.
  const RawHttpServer server([&](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\n\r\n" + body + "x");
  });
  expectError(fetch(server.url()), "too long");
}

TEST_F(HostileServer, RefusesAnAnnouncedLengthBeforeTheBodyComes) {
  const RawHttpServer server([](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 16777217\r\n\r\n");
    connection.awaitClose();
  });
  EXPECT_FALSE(fetch(server.url()).has_value());
  EXPECT_TRUE(server.awaitClosed(1));
}

TEST_F(HostileServer, AnEndlessBodyEnds) {
  for (const char* headers :
       {"\r\n", "Content-Length: 5000000000000\r\n\r\n", "Transfer-Encoding: chunked\r\n\r\n"}) {
    const bool isChunked = std::string_view(headers).starts_with("Transfer");
    const RawHttpServer server([&](Connection& connection) {
      connection.readRequest();
      connection.write(std::string("HTTP/1.1 200 OK\r\n") + headers);
      const std::string piece =
          (isChunked ? "10000\r\n" : "") + std::string(65536, 'x') + (isChunked ? "\r\n" : "");
      while (connection.write(piece)) continue;
    });
    EXPECT_FALSE(fetch(server.url()).has_value()) << headers;
    EXPECT_TRUE(server.awaitClosed(1));
  }
}

TEST_F(HostileServer, EndlessHeadersEnd) {
  const std::string line = "X-Filler: " + std::string(1000, 'x') + "\r\n";
  const RawHttpServer lines([&](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\n");
    while (connection.write(line)) continue;
  });
  expectError(fetch(lines.url()), "headers");
  const RawHttpServer oneLine([](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\nX: ");
    while (connection.write(std::string(10000, 'x'))) continue;
  });
  EXPECT_FALSE(fetch(oneLine.url()).has_value());
  const RawHttpServer interim([](Connection& connection) {
    connection.readRequest();
    while (connection.write("HTTP/1.1 103 Early Hints\r\nX: y\r\n\r\n")) continue;
  });
  EXPECT_FALSE(fetch(interim.url()).has_value());
  const RawHttpServer trailers([&](Connection& connection) {
    connection.readRequest();
    connection.write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nx\r\n0\r\n");
    while (connection.write(line)) continue;
  });
  EXPECT_FALSE(fetch(trailers.url()).has_value());
}

TEST_F(HostileServer, HeadersOfAllAnswersTogetherHaveALimit) {
  renewSession({.maxHeaderBytes = 100});
  const std::string start = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nX: ";
  const std::string end = "\r\n\r\n";
  const std::string fits(100 - start.size() - end.size(), 'x');
  const RawHttpServer fitting(answering(start + fits + end));
  EXPECT_TRUE(fetch(fitting.url()).has_value());
  const RawHttpServer tooLong(answering(start + fits + "x" + end));
  expectError(fetch(tooLong.url()), "headers");
}

TEST_F(HostileServer, UnpacksACompressedBody) {
  const RawHttpServer server(
      answering(httpAnswer(gzipped("hello"), "200 OK", "Content-Encoding: gzip\r\n")));
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "hello", .status = 200}));
}

TEST_F(HostileServer, CountsACompressedBodyAsItIsUnpacked) {
  renewSession({.maxBodyBytes = mebibyte});
  const auto server = [](std::size_t size) {
    return answering(
        httpAnswer(gzipped(std::string(size, '\0')), "200 OK", "Content-Encoding: gzip\r\n"));
  };
  const RawHttpServer fitting(server(mebibyte));
  EXPECT_TRUE(fetch(fitting.url()).has_value());
  const RawHttpServer tooLong(server(mebibyte + 1));
  expectError(fetch(tooLong.url()), "too long");
}

TEST_F(HostileServer, ABombOfCompressionDoesNotGoOff) {
  const std::string bomb = gzipped(std::string(64 * mebibyte, '\0'));
  const RawHttpServer server(answering(httpAnswer(bomb, "200 OK", "Content-Encoding: gzip\r\n")));
  expectError(fetch(server.url()), "too long");
  const RawHttpServer twice(
      answering(httpAnswer(gzipped(bomb), "200 OK", "Content-Encoding: gzip, gzip\r\n")));
  expectError(fetch(twice.url()), "too long");
}

TEST_F(HostileServer, ACompressedBodyThatIsNoneIsAnError) {
  std::string broken = gzipped(std::string(1000, 'x'));
  broken[12] = static_cast<char>(~broken[12]);
  for (const std::string& body : {std::string("hello"), broken}) {
    const RawHttpServer server(answering(httpAnswer(body, "200 OK", "Content-Encoding: gzip\r\n")));
    EXPECT_FALSE(fetch(server.url()).has_value());
  }
  const RawHttpServer unknown(
      answering(httpAnswer("hello", "200 OK", "Content-Encoding: made-up\r\n")));
  EXPECT_FALSE(fetch(unknown.url()).has_value());
}

TEST_F(HostileServer, GarbageIsAnError) {
  for (const char* garbage : {"garbage", "\r\n\r\n", "HTTP", "HTTP/9.9 200 OK\r\n\r\n",
                              "SSH-2.0-server\r\n", "<html>an answer of HTTP/0.9</html>",
                              "HTTP/1.1 99999 Odd\r\n\r\n", "HTTP/1.1 abc\r\n\r\n"}) {
    const RawHttpServer server([&](Connection& connection) {
      connection.readRequest();
      connection.write(garbage);
    });
    EXPECT_FALSE(fetch(server.url()).has_value()) << garbage;
  }
}

// Redirects

std::string redirect(const std::string& to, const char* status = "302 Found") {
  return httpAnswer("moved", status, "Location: " + to + "\r\n");
}

TEST_F(HostileServer, FollowsRedirectsRelativeOnesToo) {
  const RawHttpServer server([](Connection& connection) {
    for (std::string request; !(request = connection.readRequest()).empty();) {
      if (request.starts_with("GET /a/start ")) connection.write(redirect("next"));
      if (request.starts_with("GET /a/next ")) connection.write(redirect("/end?x"));
      if (request.starts_with("GET /end?x ")) connection.write(httpAnswer("there"));
    }
  });
  EXPECT_EQ(fetch(server.url("/a/start")), (HttpResponse{.body = "there", .status = 200}));
}

TEST_F(HostileServer, FollowsTenRedirectsAndNoMore) {
  std::atomic<int> left = 10;
  const RawHttpServer server([&](Connection& connection) {
    while (!connection.readRequest().empty()) {
      connection.write(left-- > 0 ? redirect("/again") : httpAnswer("there"));
    }
  });
  EXPECT_TRUE(fetch(server.url()).has_value());
  EXPECT_EQ(server.requests().size(), 11U);
  left = 11;
  EXPECT_FALSE(fetch(server.url()).has_value());
  EXPECT_EQ(server.requests().size(), 22U);
  left = 1'000'000;
  EXPECT_FALSE(fetch(server.url()).has_value());
  EXPECT_EQ(server.requests().size(), 33U);
}

TEST_F(HostileServer, FollowsRedirectsToHttpAndHttpsOnly) {
  for (const char* target : {"file:///etc/hostname", "ftp://127.0.0.1/x", "gopher://127.0.0.1/x",
                             "data:text/plain,x", "http://", "http://[::1"}) {
    const RawHttpServer server(answering(redirect(target)));
    EXPECT_FALSE(fetch(server.url()).has_value()) << target;
    EXPECT_EQ(server.requests().size(), 1U);
  }
}

TEST_F(HostileServer, ARedirectWithoutATargetIsAnAnswer) {
  const RawHttpServer server(answering(httpAnswer("", "302 Found")));
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "", .status = 302}));
}

TEST_F(HostileServer, APostKeepsItsMethodWhereTheRedirectSaysSo) {
  const RawHttpServer server([](Connection& connection) {
    for (std::string request; !(request = connection.readRequest()).empty();) {
      const bool isStart = request.starts_with("POST /start ");
      connection.write(isStart ? redirect("/end", "307 Temporary Redirect") : httpAnswer("there"));
    }
  });
  EXPECT_TRUE(
      fetch({.method = HttpMethod::post, .url = server.url("/start"), .headers = {}, .body = "x"})
          .has_value());
  ASSERT_EQ(server.requests().size(), 2U);
  EXPECT_THAT(server.requests()[1], StartsWith("POST /end "));
  EXPECT_TRUE(server.requests()[1].ends_with("\r\n\r\nx"));
}

TEST_F(HostileServer, TheTimeIsForAllRedirectsTogether) {
  const RawHttpServer server([](Connection& connection) {
    while (!connection.readRequest().empty()) {
      connection.pause(milliseconds(40));
      connection.write(redirect("/again"));
    }
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(fetch({.url = server.url(), .timeout = milliseconds(100)}).has_value());
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(99));
  EXPECT_LE(server.requests().size(), 3U);
}

TEST_F(HostileServer, AGoodAnswerAfterABadOneIsGiven) {
  std::atomic<bool> isGood = false;
  const RawHttpServer server([&](Connection& connection) {
    connection.readRequest();
    connection.write(isGood ? httpAnswer("good") : "HTTP/1.1 200 OK\r\nContent-Len");
  });
  EXPECT_FALSE(fetch(server.url()).has_value());
  isGood = true;
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "good", .status = 200}));
}

}  // namespace
}  // namespace kestrow
