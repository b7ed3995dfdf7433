// The program as one: creates every long-lived object, joins their callbacks, answers the desktop,
// and owns render(), the one way from state to pixels.
#pragma once

#include "Kestrow/PanelView.hpp"
#include "Kestrow/PillWindow.hpp"
#include "Kestrow/Platform/Desktop.hpp"
#include "Kestrow/Platform/UserDefaults.hpp"
#include "KestrowCore/Date.hpp"
#include "KestrowCore/Http.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/LoginItem.hpp"
#include "KestrowCore/MainThread.hpp"
#include "KestrowCore/MatchPicker.hpp"
#include "KestrowCore/PillDisplay.hpp"
#include "KestrowCore/Poller.hpp"
#include "KestrowCore/ProPoller.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Subscription.hpp"
#include "KestrowCore/Task.hpp"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrow {

// Main thread only. Lives as long as the process; there is no shutdown beyond destroying it, which
// drops every wait and every request in flight.
class AppDelegate {
 public:
  // What the program stands on. The references outlive the delegate.
  struct Surroundings {
    Desktop& desktop;
    UserDefaults& defaults;
    MainThread& mainThread;
    Transport transport;
    std::unique_ptr<LoginService> loginService;
    std::unique_ptr<LaunchAgentFile> launchAgent;  // may be null: no second way to start at login
    std::filesystem::path stateDirectory = LocalStore::defaultDirectory();
    std::string baseUrl = ScoreClient::defaultBaseUrl;
    Now now = systemNow;
    FormatStart formatStart = start_time_text::standard;
  };

  // A deadline that has all but passed still leaves the loop this long to breathe.
  static constexpr Seconds shortestRenderDelay{0.05};
  // Keeps start times and countdowns current between polls.
  static constexpr Seconds idleRenderDelay{60};

  explicit AppDelegate(Surroundings surroundings);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  // Builds everything and starts polling. Once.
  void applicationDidFinishLaunching();

  // The user opened the program again: a hidden pill comes back, and the panel opens.
  void applicationShouldHandleReopen();

  // Shows the state as it is now: a showing alert, else a countdown where one is due, else the
  // score. Sets the next render. Nothing before launch has finished.
  void render();

 private:
  void createObjects();
  void joinCallbacks();
  void observeDesktop();
  void willSleep();
  void didWake();
  void clockChanged();
  PillEmphasis presentBoom(const PillAppearance& appearance, PillContent& content);
  void scheduleNextRender();

  Surroundings around_;
  std::unique_ptr<LocalStore> store_;
  ScoreClient client_;
  std::unique_ptr<Poller> poller_;
  std::unique_ptr<ProPoller> pro_;
  std::unique_ptr<PillController> pill_;
  std::unique_ptr<MatchPicker> picker_;
  std::unique_ptr<LoginItem> loginItem_;
  std::unique_ptr<PanelController> panel_;
  std::unique_ptr<DelayedAction> renderTask_;  // the one pending render
  std::optional<std::int64_t> announcedBoomId_;
  std::vector<Subscription> subscriptions_;
  TaskScope background_;
};

}  // namespace kestrow
