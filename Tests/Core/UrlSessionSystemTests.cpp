// What the transport asks of the system: threads, wake-ups, name lookups.
#include "KestrowCore/UrlSession.hpp"
#include "Tests/Support/RawHttpServer.hpp"
#include "Tests/Support/UrlSessionFixture.hpp"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <netdb.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kestrow {
namespace {

// A name whose lookup takes until the test lets it go, as with a name server that is away.
constexpr std::string_view slowName = "slow.test";
std::atomic<int> slowLookups = 0;
std::atomic<bool> isNameServerAway = true;

}  // namespace
}  // namespace kestrow

// Stands before the C library's, for all of the test program.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                           addrinfo** result) {
  if (name != nullptr && name == kestrow::slowName) {
    ++kestrow::slowLookups;
    kestrow::slowLookups.notify_all();
    kestrow::isNameServerAway.wait(true);
    ++kestrow::slowLookups;
    kestrow::slowLookups.notify_all();
    return EAI_FAIL;
  }
  using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  static const auto original = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  return original(name, service, hints, result);
}

namespace kestrow {
namespace {

class UrlSessionOnItsSystem : public UrlSessionFixture {
 protected:
  static std::set<std::string> threads() {
    std::set<std::string> ids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
      ids.insert(entry.path().filename());
    }
    return ids;
  }

  static std::set<std::string> threadsSince(const std::set<std::string>& before) {
    std::set<std::string> added = threads();
    std::erase_if(added, [&](const std::string& id) { return before.contains(id); });
    return added;
  }

  // How often a thread has slept and been woken.
  static std::string wakeUps(const std::string& thread) {
    std::ifstream file("/proc/self/task/" + thread + "/status");
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("voluntary_ctxt_switches:")) return line;
    }
    return "";
  }
};

TEST_F(UrlSessionOnItsSystem, HasNoThreadBeforeTheFirstRequestAndOneForAll) {
  const auto before = threads();
  renewSession();
  EXPECT_TRUE(threadsSince(before).empty());
  EXPECT_FALSE(fetch("nonsense://").has_value());
  EXPECT_EQ(threadsSince(before).size(), 1U);
  EXPECT_FALSE(fetch("nonsense://").has_value());
  EXPECT_EQ(threadsSince(before).size(), 1U);
  endSession();
  // The system lists a thread for a moment after it has been joined.
  while (!threadsSince(before).empty()) std::this_thread::yield();
}

TEST_F(UrlSessionOnItsSystem, HoldsRequestsAndItsThreadBackUntilItIsToldToStart) {
  const auto before = threads();
  session().hold();
  std::vector<std::string> ends;
  TaskScope scope;
  for (int i = 0; i < 2; ++i) scope.start(appendBody(session().send({.url = "nonsense://"}), ends));
  loop().runUntil([&] { return !ends.empty(); }, Seconds(0.1));
  EXPECT_TRUE(ends.empty());
  EXPECT_TRUE(threadsSince(before).empty());

  session().release();
  loop().runUntil([&] { return ends.size() == 2; }, patience);
  EXPECT_EQ(ends.size(), 2U);
  session().release();
  EXPECT_FALSE(fetch("nonsense://").has_value());
  EXPECT_EQ(threadsSince(before).size(), 1U);
}

TEST_F(UrlSessionOnItsSystem, ARequestThatIsCancelledWhileItIsHeldBackIsNotSent) {
  const RawHttpServer server(answering(httpAnswer("x")));
  session().hold();
  std::vector<std::string> bodies;
  {
    TaskScope scope;
    scope.start(appendBody(session().send({.url = server.url("/cancelled")}), bodies));
  }
  session().release();
  EXPECT_TRUE(fetch(server.url("/wanted")).has_value());
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_THAT(server.requests()[0], testing::StartsWith("GET /wanted "));
  EXPECT_TRUE(bodies.empty());
}

TEST_F(UrlSessionOnItsSystem, RequestsThatWereHeldBackEndWithTheSession) {
  session().hold();
  std::vector<std::string> ends;
  TaskScope scope;
  scope.start(appendBody(session().send({.url = "http://127.0.0.1/"}), ends));
  endSession();
  loop().runUntil([&] { return !ends.empty(); }, patience);
  EXPECT_EQ(ends, std::vector<std::string>{"The session has ended"});
}

TEST_F(UrlSessionOnItsSystem, WithoutItsLibraryEveryRequestFailsAndSaysWhy) {
  renewSession({.libraryFile = "libcurl-that-is-not-there.so"});
  for (int i = 0; i < 2; ++i) {
    const Result result = fetch("http://127.0.0.1/");
    ASSERT_FALSE(result.has_value());
    EXPECT_THAT(result.error().description, testing::HasSubstr("libcurl-that-is-not-there.so"));
  }
}

TEST_F(UrlSessionOnItsSystem, ALibraryThatLacksAFunctionIsNone) {
  renewSession({.libraryFile = "libdl.so.2"});
  const Result result = fetch("http://127.0.0.1/");
  ASSERT_FALSE(result.has_value());
  EXPECT_THAT(result.error().description, testing::StartsWith("libcurl lacks curl_"));
}

TEST_F(UrlSessionOnItsSystem, SleepsWhileThereIsNothingToDo) {
  const auto before = threads();
  EXPECT_FALSE(fetch("nonsense://").has_value());
  const auto added = threadsSince(before);
  ASSERT_EQ(added.size(), 1U);
  const std::string own = *added.begin();
  const RawHttpServer server(answering(httpAnswer("x")));
  EXPECT_TRUE(fetch(server.url()).has_value());
  // The thread goes to sleep once it has given its answer; from then on, nothing.
  loop().runUntil([] { return false; }, Seconds(0.02));
  const std::string asleep = wakeUps(own);
  ASSERT_FALSE(asleep.empty());
  loop().runUntil([] { return false; }, Seconds(0.3));
  EXPECT_EQ(wakeUps(own), asleep);
}

TEST_F(UrlSessionOnItsSystem, KeepsNothingOfRequestsThatAreOver) {
  const RawHttpServer server(answering(httpAnswer("x")));
  const auto inUseAfter = [&](int requests) {
    for (int i = 0; i < requests; ++i) EXPECT_TRUE(fetch(server.url()).has_value());
    return ::mallinfo2().uordblks;
  };
  const std::size_t before = inUseAfter(20);
  constexpr int requests = 100;
  constexpr std::size_t mostForEach = 1000;
  EXPECT_LT(inUseAfter(requests), before + requests * mostForEach);
}

TEST_F(UrlSessionOnItsSystem, ANameServerThatIsAwayHoldsUpNobodyElse) {
  slowLookups = 0;
  isNameServerAway = true;
  const RawHttpServer server(answering(httpAnswer("x")));
  const std::string slowUrl = "http://" + std::string(slowName) + "/";
  std::optional<Result> cancelled;
  {
    TaskScope scope;
    scope.start(keep(session().send({.url = slowUrl}), cancelled));
    slowLookups.wait(0);
  }
  EXPECT_TRUE(fetch(server.url()).has_value());
  EXPECT_FALSE(fetch({.url = slowUrl, .timeout = std::chrono::milliseconds(30)}).has_value());
  EXPECT_TRUE(fetch(server.url()).has_value());
  std::optional<Result> ended;
  TaskScope scope;
  scope.start(keep(session().send({.url = slowUrl}), ended));
  while (slowLookups < 3) slowLookups.wait(slowLookups);
  endSession();
  EXPECT_TRUE(loop().runUntil([&] { return ended.has_value(); }, patience));
  // The lookups end by themselves, in their own time.
  isNameServerAway = false;
  isNameServerAway.notify_all();
  while (slowLookups < 6) slowLookups.wait(slowLookups);
}

}  // namespace
}  // namespace kestrow
