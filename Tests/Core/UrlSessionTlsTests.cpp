// Servers behind TLS, those that can be believed and those that can't.
#include "KestrowCore/UrlSession.hpp"
#include "Tests/Support/RawHttpServer.hpp"
#include "Tests/Support/TlsIdentity.hpp"
#include "Tests/Support/UrlSessionFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

namespace kestrow {
namespace {

using Connection = RawHttpServer::Connection;

constexpr const char* ownName = "IP:127.0.0.1";

// The session trusts the test's authority and no other.
class UrlSessionTlsTest : public UrlSessionFixture {
 protected:
  UrlSessionTlsTest() {
    std::ofstream(file_) << authority_.certificate();
    renewSession({.certificateFile = file_.string()});
  }
  void TearDown() override { std::filesystem::remove(file_); }

  const TestAuthority& authority() const { return authority_; }

  // Asks a server with this identity; it must refuse before it says anything.
  void expectRefusal(const TlsIdentity& identity) {
    const RawHttpServer server(answering(httpAnswer("secret")), identity);
    const Result result = fetch(server.url());
    ASSERT_FALSE(result.has_value());
    EXPECT_THAT(result.error().description, testing::ContainsRegex("SSL|certificate"));
    EXPECT_TRUE(server.requests().empty());
  }

 private:
  TestAuthority authority_;
  std::filesystem::path file_ = std::filesystem::path(testing::TempDir()) /
                                ("authority-" + std::to_string(::getpid()) + ".pem");
};

TEST_F(UrlSessionTlsTest, TakesTheAnswerOfAServerThatIsVouchedFor) {
  const RawHttpServer server(answering(httpAnswer("hello")), authority().issue(ownName));
  EXPECT_EQ(fetch(server.url()), (HttpResponse{.body = "hello", .status = 200}));
}

TEST_F(UrlSessionTlsTest, RefusesAServerThatVouchesForItself) {
  expectRefusal(TestAuthority::selfSigned(ownName));
}

TEST_F(UrlSessionTlsTest, RefusesACertificateThatHasExpired) {
  expectRefusal(authority().issue(ownName, std::chrono::hours(-1)));
}

TEST_F(UrlSessionTlsTest, RefusesACertificateForAnotherName) {
  expectRefusal(authority().issue("DNS:scores.example"));
  expectRefusal(authority().issue("IP:127.0.0.2"));
}

TEST_F(UrlSessionTlsTest, RefusesAnAuthorityThatItDoesNotTrust) {
  expectRefusal(TestAuthority().issue(ownName));
}

TEST_F(UrlSessionTlsTest, TrustsTheSystemsAuthoritiesUnlessToldOtherwise) {
  renewSession();
  expectRefusal(authority().issue(ownName));
}

TEST_F(UrlSessionTlsTest, RefusesAServerThatSpeaksNoTls) {
  const RawHttpServer server([](Connection& connection) {
    connection.write(httpAnswer("hello"));
    connection.awaitClose();
  });
  EXPECT_FALSE(fetch("https" + server.url().substr(4)).has_value());
}

// A script that redirects every request.
RawHttpServer::Script redirecting(const std::string& to) {
  return answering(httpAnswer("", "302 Found", "Location: " + to + "\r\n"));
}

TEST_F(UrlSessionTlsTest, FollowsARedirectUpToHttps) {
  const RawHttpServer secure(answering(httpAnswer("hello")), authority().issue(ownName));
  const RawHttpServer plain(redirecting(secure.url()));
  EXPECT_EQ(fetch(plain.url()), (HttpResponse{.body = "hello", .status = 200}));
}

TEST_F(UrlSessionTlsTest, RefusesARedirectDownToHttp) {
  const RawHttpServer plain(answering(httpAnswer("hello")));
  const RawHttpServer secure(redirecting(plain.url()), authority().issue(ownName));
  EXPECT_EQ(fetch(secure.url()),
            std::unexpected(TransportError{"A redirect from https to http was refused"}));
  EXPECT_TRUE(plain.requests().empty());
  EXPECT_EQ(secure.requests().size(), 1U);
}

TEST_F(UrlSessionTlsTest, RefusesARedirectUpToHttpsAndDownAgain) {
  const RawHttpServer end(answering(httpAnswer("hello")));
  const RawHttpServer secure(redirecting(end.url()), authority().issue(ownName));
  const RawHttpServer start(redirecting(secure.url()));
  EXPECT_FALSE(fetch(start.url()).has_value());
  EXPECT_TRUE(end.requests().empty());
}

TEST_F(UrlSessionTlsTest, RefusesToFollowARedirectToAServerThatIsNotVouchedFor) {
  const RawHttpServer bad(answering(httpAnswer("hello")), TestAuthority::selfSigned(ownName));
  const RawHttpServer good(redirecting(bad.url()), authority().issue(ownName));
  EXPECT_FALSE(fetch(good.url()).has_value());
  EXPECT_TRUE(bad.requests().empty());
}

}  // namespace
}  // namespace kestrow
