// The whole program on a desktop, a clock and a score service in the test's hand.
#pragma once

#include "Kestrow/AppDelegate.hpp"
#include "KestrowCore/BoomEventCoding.hpp"
#include "KestrowCore/MatchCoding.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/HeldTransport.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/NoLogin.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrow {

inline constexpr std::string_view matchesPath = "/api/matches";
inline constexpr std::string_view eventsPath = "/api/pro/match";
inline constexpr std::string_view installPath = "/api/install";

inline Match liveMatch(std::int64_t runs = 45) {
  Match match = records::match("m1");
  match.innings = {{.team = "MI", .runs = runs, .wickets = 1, .overs = 6.2}};
  return match;
}

class AppDelegateTest : public testing::Test {
 protected:
  void follow(const std::string& id) const {
    ASSERT_TRUE(LocalStore(folder_.path()).setFollowedMatchId(id));
  }

  AppDelegate::Surroundings surroundings() {
    return {.desktop = desktop_,
            .defaults = defaults_,
            .mainThread = mainThread_,
            .transport = http_.transport(),
            .loginService = std::make_unique<NoLoginService>(),
            .launchAgent = std::make_unique<NoLaunchAgent>(),
            .stateDirectory = folder_.path(),
            .baseUrl = "http://scores.test",
            .now = [this] { return mainThread_.now() + clockShift_; },
            .formatStart = [this](Date) { return "start " + std::to_string(++startsWorded_); }};
  }

  void launch() {
    delegate_ = std::make_unique<AppDelegate>(surroundings());
    delegate_->applicationDidFinishLaunching();
  }

  void answerMatches(std::vector<Match> live) {
    ASSERT_TRUE(http_.answer(matchesPath, encode(MatchesResponse{.live = std::move(live)})));
  }

  void answerEvents(std::int64_t newest, std::vector<BoomEvent> events,
                    std::optional<Match> nextFixture = {}) {
    ASSERT_TRUE(
        http_.answer(eventsPath, encode(ProMatchPayload{.match = liveMatch(),
                                                        .newestEventId = newest,
                                                        .events = std::move(events),
                                                        .keyMoments = {},
                                                        .nextFixture = std::move(nextFixture)})));
  }

  // Follows a live match whose ten events so far are taken as seen.
  void launchIntoLiveMatch() {
    follow("m1");
    launch();
    answerMatches({liveMatch()});
    answerEvents(10, {});
  }

  // A minute later, a poll brings these events.
  void pollBrings(std::vector<BoomEvent> events) {
    mainThread_.advance(std::chrono::minutes(1));
    answerMatches({liveMatch()});
    const auto newest = events.back().id;
    answerEvents(newest, std::move(events));
  }

  PanelSurfaceRecord& panel() const { return *desktop_.panels.at(0); }
  auto timesShown() const { return std::ranges::count(panel().calls, "show"); }
  std::string pillText() const { return desktop_.surface()->client->accessibilityLabel(); }

  TemporaryFolder folder_;
  ManualMainThread mainThread_;
  std::chrono::seconds clockShift_{0};
  int startsWorded_ = 0;
  HeldTransport http_;
  FakeDesktop desktop_;
  FakeDefaults defaults_;
  std::unique_ptr<AppDelegate> delegate_;
};

}  // namespace kestrow
