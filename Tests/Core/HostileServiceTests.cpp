// A score service that has turned hostile, or broken, from the socket to the pill's texts: what it
// says wrongly counts as a missed poll, what it says oddly is shown as plain text, and the next
// good answer is shown.
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "KestrowCore/MatchPicker.hpp"
#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/Poller.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Text.hpp"
#include "KestrowCore/UrlSession.hpp"
#include "Tests/Support/Environment.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/RawHttpServer.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"
#include "Tests/Support/TlsIdentity.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {
namespace {

using Connection = RawHttpServer::Connection;
using records::live;
using records::match;

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

// The most memory that this process has had, in bytes.
std::size_t peakMemory() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

std::string listing(std::vector<Match> matches) {
  return httpAnswer(encode(live(std::move(matches))));
}

Match finished(const std::string& id, std::string status) {
  Match made = match(id, MatchPhase::finished);
  made.status = std::move(status);
  return made;
}

// So many matches that are live, small as they come, and the finished one that is followed.
std::string manyMatches(int count) {
  Match other = match("#");
  other.team1 = other.team2 = {.name = "a", .shortName = "A"};
  const std::string pattern = json::encodeReplacing(other);
  const std::size_t place = pattern.find('#');
  std::string body =
      R"({"finished":[)" + json::encodeReplacing(finished("a", "Match tied")) + R"(],"live":[)";
  for (int i = 1; i <= count; ++i) {
    body += std::string(pattern).replace(place, 1, std::to_string(i)) + ",";
  }
  body.back() = ']';
  return httpAnswer(body + "}");
}

// A poller that follows match "a", with the real client and transport, on a server whose manners
// change. Time-outs are a hundredth of what the client asks for, so that waiting for one is short.
class HostileService : public testing::Test {
 protected:
  HostileService() {
    poller_->follow("a");
    say(listing({match("a")}));
    poller_->onChange = [this](const FollowState&) { ++changes_; };
    poller_->start();
    EXPECT_TRUE(mainThread_.awaitPosted());
    EXPECT_TRUE(poller_->state().lastMatch.has_value());
  }

  void behave(RawHttpServer::Script script) {
    const std::lock_guard lock(mutex_);
    script_ = std::move(script);
  }
  void say(std::string answer) {
    behave([answer = std::move(answer)](Connection& connection) { connection.write(answer); });
  }

  // The answer may come as soon as the request is on its way.
  void pollAgain() {
    const int before = changes_;
    mainThread_.advance(poller_->state().pollInterval());
    while (changes_ == before) ASSERT_TRUE(mainThread_.awaitPosted());
  }
  const FollowState& state() const { return poller_->state(); }

  // The next poll fails and leaves what is shown; the one after it succeeds.
  void expectMiss(const std::string& what, RawHttpServer::Script script) {
    SCOPED_TRACE(what);
    const auto shown = state().lastMatch;
    behave(std::move(script));
    pollAgain();
    EXPECT_EQ(state().consecutiveFailures, 1);
    EXPECT_EQ(state().lastMatch, shown);
    say(listing({finished("a", what)}));
    pollAgain();
    EXPECT_EQ(state().consecutiveFailures, 0);
    ASSERT_TRUE(state().lastMatch.has_value());
    EXPECT_EQ(state().lastMatch->status, what);
  }
  void expectMiss(const std::string& what, std::string answer) {
    expectMiss(what,
               [answer = std::move(answer)](Connection& connection) { connection.write(answer); });
  }
  void expectBodyMissed(const std::string& what, std::string_view body) {
    expectMiss(what, httpAnswer(body));
  }

  // The next poll succeeds; gives the pill's content.
  PillContent shown(const std::string& answer) {
    say(answer);
    pollAgain();
    EXPECT_EQ(state().consecutiveFailures, 0);
    return PillContent(state().pill(start_time_text::standard));
  }

  // What the picker offers of the last answer.
  std::vector<PickerRow> offered() const {
    const PickerState built =
        PickerState::build(*state().lastResponse, "a", start_time_text::standard);
    std::vector<PickerRow> rows;
    for (const PickerSection& section : std::get<PickerState::Loaded>(built.value).sections) {
      rows.insert(rows.end(), section.rows.begin(), section.rows.end());
    }
    return rows;
  }

  const TestAuthority& authority() const { return authority_; }

 private:
  std::shared_ptr<UrlSession> trustingSession() {
    const auto file = folder_.path() / "authority.pem";
    writeFile(file, authority_.certificate());
    return std::make_shared<UrlSession>(mainThread_,
                                        UrlSession::Options{.certificateFile = file.string()});
  }

  // One request for each connection, so that each meets the script of its time.
  void serve(Connection& connection) {
    connection.readRequest();
    RawHttpServer::Script script;
    {
      const std::lock_guard lock(mutex_);
      script = script_;
    }
    script(connection);
  }

  const EnvironmentVariable noProxy_{"http_proxy", std::nullopt};
  const EnvironmentVariable noSecureProxy_{"https_proxy", std::nullopt};
  std::mutex mutex_;  // of script_
  RawHttpServer::Script script_;
  RawHttpServer server_{[this](Connection& connection) { serve(connection); }};
  TemporaryFolder folder_;
  TestAuthority authority_;
  LocalStore store_{folder_.path()};
  ManualMainThread mainThread_;
  std::shared_ptr<UrlSession> session_ = trustingSession();
  ScoreClient client_{.baseUrl = server_.url(""), .transport = [this](HttpRequest request) {
                        request.timeout /= 100;
                        return session_->send(std::move(request));
                      }};
  std::optional<Poller> poller_{std::in_place, client_, mainThread_, store_};
  int changes_ = 0;
};

// What breaks on the way

TEST_F(HostileService, AResetAnywhereInTheAnswerIsAMiss) {
  const std::string answer = httpAnswer("{}");
  for (std::size_t length = 0; length < answer.size(); ++length) {
    expectMiss("reset after " + std::to_string(length), [&](Connection& connection) {
      connection.write(answer.substr(0, length));
      connection.reset();
    });
  }
}

TEST_F(HostileService, AByteNowAndThenIsAMissOnceTheTimeIsUp) {
  expectMiss("a byte at a time", [](Connection& connection) {
    for (const char byte : listing({match("a")})) {
      if (!connection.write(std::string(1, byte))) return;
      if (!connection.pause(std::chrono::milliseconds(10))) return;
    }
  });
  expectMiss("silence", [](Connection& connection) { connection.awaitClose(); });
}

TEST_F(HostileService, WhatNeverEndsIsAMissAndTakesNoMemory) {
  const std::size_t before = peakMemory();
  expectMiss("endless headers", [](Connection& connection) {
    connection.write("HTTP/1.1 200 OK\r\n");
    while (connection.write("X: " + std::string(1000, 'x') + "\r\n")) continue;
  });
  expectMiss("an endless body", [](Connection& connection) {
    connection.write("HTTP/1.1 200 OK\r\n\r\n");
    while (connection.write(std::string(65536, ' '))) continue;
  });
  EXPECT_LT(peakMemory() - before, 128 * mebibyte);

  const std::string bomb = gzipped(std::string(256 * mebibyte, ' '));
  const std::size_t withBomb = peakMemory();
  expectMiss("a bomb of compression", httpAnswer(bomb, "200 OK", "Content-Encoding: gzip\r\n"));
  EXPECT_LT(peakMemory() - withBomb, 64 * mebibyte);
}

TEST_F(HostileService, RedirectsInCirclesOrToFilesAreMisses) {
  expectMiss("in circles", httpAnswer("", "302 Found", "Location: /again\r\n"));
  expectMiss("to a file", httpAnswer("", "302 Found", "Location: file:///etc/hostname\r\n"));
  expectMiss("to nowhere", httpAnswer("", "302 Found"));
}

TEST_F(HostileService, AServerThatCannotProveItsNameIsAMissAndIsToldNothing) {
  const std::vector<std::pair<std::string, TlsIdentity>> impostors{
      {"another's name", authority().issue("DNS:scores.example")},
      {"expired", authority().issue("IP:127.0.0.1", std::chrono::hours(-1))},
      {"vouches for itself", TestAuthority::selfSigned("IP:127.0.0.1")},
  };
  for (const auto& [what, identity] : impostors) {
    const RawHttpServer impostor(answering(listing({match("a")})), identity);
    expectMiss(what, httpAnswer("", "302 Found", "Location: " + impostor.url() + "\r\n"));
    EXPECT_TRUE(impostor.requests().empty());
    EXPECT_EQ(impostor.connectionCount(), 1);
  }
}

// What is no list of matches

TEST_F(HostileService, AnswersWithoutAListAreMisses) {
  expectMiss("204", "HTTP/1.1 204 No Content\r\n\r\n");
  expectMiss("304", "HTTP/1.1 304 Not Modified\r\n\r\n");
  expectMiss("500", httpAnswer(encode(live({match("a")})), "500 Internal Server Error"));
  expectMiss("404", httpAnswer("{}", "404 Not Found"));
  expectBodyMissed("HTML", "<!DOCTYPE html><title>Sign in to the hotel's network</title>");
  expectBodyMissed("nothing", "");
  expectBodyMissed("half", R"({"live":[)");
  expectBodyMissed("two", "{}{}");
  expectBodyMissed("null", "null");
  expectBodyMissed("a list", "[]");
  expectBodyMissed("not UTF-8", "{\"x\":\"\xff\"}");
  expectBodyMissed("half a character", "{\"x\":\"\\ud83c\"}");
  expectBodyMissed("a zero byte", std::string_view("{}\0", 3));
}

TEST_F(HostileService, ValuesThatNothingCanHoldAreMisses) {
  const std::string good = encode(live({match("a")}));
  const auto with = [&](std::string_view from, std::string_view to) {
    std::string body = good;
    return body.replace(body.find(from), from.size(), to);
  };
  const auto innings = [&](const std::string& runs, const std::string& overs) {
    return with("\"innings\":[]", R"("innings":[{"team":"MI","runs":)" + runs +
                                      R"(,"wickets":0,"overs":)" + overs + "}]");
  };
  say(httpAnswer(innings("145", "15.2")));
  pollAgain();
  ASSERT_EQ(state().lastMatch->innings.size(), 1U);
  expectBodyMissed("runs beyond 64 bits", innings("9223372036854775808", "1"));
  expectBodyMissed("runs far beyond", innings("1e300", "1"));
  expectBodyMissed("half a run", innings("0.5", "1"));
  expectBodyMissed("overs beyond counting", innings("1", "1e19"));
  expectBodyMissed("overs beyond numbers", innings("1", "1e999"));
  expectBodyMissed("an unknown phase", with("\"live\",\"status\"", "\"abandoned\",\"status\""));
  expectBodyMissed("a year of five digits", R"({"updatedAt":"10000-01-01T00:00:00Z","live":[]})");
  expectBodyMissed("deep nesting",
                   "{\"x\":" + std::string(100'000, '[') + std::string(100'000, ']') + "}");
  expectMiss("a text of a mebibyte", listing({finished("a", std::string(mebibyte, 'w'))}));
  expectMiss("a match too many", manyMatches(10'001));
  expectMiss("a hundred thousand matches", manyMatches(100'000));
}

// What is one, and odd

TEST_F(HostileService, TenThousandMatchesAreTaken) {
  const std::string answer = manyMatches(10'000);
  ASSERT_LT(answer.size(), 4 * mebibyte);
  const std::size_t before = peakMemory();
  EXPECT_EQ(shown(answer).primary, "Match tied");
  EXPECT_EQ(state().lastResponse->live.size(), 10'000U);
  EXPECT_LT(peakMemory() - before, 256 * mebibyte);
}

TEST_F(HostileService, OfMatchesWithOneIdTheFirstIsFollowed) {
  EXPECT_EQ(shown(listing({finished("a", "first"), finished("a", "second")})).primary, "first");
}

TEST_F(HostileService, TheLastMomentOfTheYear9999IsWorded) {
  Match late = match("a", MatchPhase::notStarted);
  late.startTime = parseInternetDate("9999-12-31T23:59:59.999999Z");
  const PillContent content = shown(listing({late}));
  EXPECT_EQ(content.secondary, "Starts");
  EXPECT_FALSE(content.primary.empty());
  late.startTime = parseInternetDate("0000-01-01T00:00:00Z");
  EXPECT_FALSE(shown(listing({late})).primary.empty());
}

TEST_F(HostileService, TheLongestTextsAreShortenedWherePlaceIsShort) {
  const std::string endless(json::Decoder::longestText, 'w');
  Match big = finished("a", endless);
  big.team1 = {.name = endless, .shortName = endless};
  big.tournament = endless;
  const PillContent content = shown(listing({big}));
  EXPECT_EQ(text::characters(content.primary).size(), 26U);
  const auto measure = [](std::string_view part) { return 7.0 * static_cast<double>(part.size()); };
  EXPECT_LE(PillContent::truncate(*content.teams, 200, measure).size(), 30U);
}

TEST_F(HostileService, ControlCharactersAndOverridesOfDirectionArriveAsTheyAre) {
  const std::string odd =
      std::string(1, '\0') + "\x01\x1b[31m\x7f\u0085\u202e\u2066<b>&amp;%n%s\u2069\n\r\t";
  Match strange = match("a", MatchPhase::live);
  strange.id = "a";
  strange.league = odd;
  strange.team1 = {.name = odd, .shortName = odd};
  const PillContent content = shown(listing({strange}));
  EXPECT_EQ(content.teams, odd + " v CSK");
  EXPECT_EQ(state().lastMatch->team1.name, odd);
  ASSERT_EQ(offered().size(), 1U);
  EXPECT_EQ(offered().at(0).competition, odd);
}

}  // namespace
}  // namespace kestrow
