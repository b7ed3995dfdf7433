// A poller of key events on a clock and with answers in the test's hand, and a store of its own.
#pragma once

#include "KestrowCore/ProPoller.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {

inline FollowState following(const std::optional<std::string>& id,
                             MatchPhase phase = MatchPhase::live) {
  FollowState state(id);
  if (id) state.lastMatch = records::match(*id, phase);
  return state;
}

inline ProMatchPayload payload(std::int64_t newest, std::vector<BoomEvent> events = {},
                               std::vector<BoomEvent> keyMoments = {}) {
  return {.match = records::match("a"),
          .newestEventId = newest,
          .events = std::move(events),
          .keyMoments = std::move(keyMoments)};
}

class ProPollerTest : public testing::Test {
 public:
  using Answer = FeedResult<ProMatchResult>;
  struct Request {
    std::string matchId;
    std::optional<std::int64_t> since;
    Pending<Answer> answer;
  };

  ProPollerTest() {
    poller.onChange = [this] { ++changes; };
  }

  // A new file takes the place of the old one with each save.
  ino_t fileIdentity() const {
    struct stat status{};
    return ::stat(store.fileUrl().c_str(), &status) == 0 ? status.st_ino : 0;
  }

  void answerLast(Answer answer) { requests.back().answer.complete(std::move(answer)); }

  void baseline(std::int64_t newest) {
    poller.startUpdate(following("a"));
    answerLast(payload(newest));
  }

  ManualMainThread mainThread;
  TemporaryFolder folder;
  LocalStore store{folder.path()};
  std::vector<Request> requests;
  int changes = 0;
  ProPoller poller{[this](std::string matchId, std::optional<std::int64_t> since) {
                     requests.push_back({std::move(matchId), since, {}});
                     return requests.back().answer.task();
                   },
                   store, mainThread.clock()};
};

}  // namespace kestrow
