// The panel under the pill: the match picker, the key moments, the customisation and the
// preferences. Turns the program's state into a tree of nodes for the desktop's panel surface, and
// what the user does there into changes of that state.
#pragma once

#include "Kestrow/PanelNodes.hpp"
#include "Kestrow/PillWindow.hpp"
#include "Kestrow/Platform/Desktop.hpp"
#include "Kestrow/Platform/PanelSurface.hpp"
#include "Kestrow/Platform/UserDefaults.hpp"
#include "KestrowCore/Geometry.hpp"
#include "KestrowCore/LocalStore.hpp"
#include "KestrowCore/LoginItem.hpp"
#include "KestrowCore/MatchPicker.hpp"
#include "KestrowCore/Poller.hpp"
#include "KestrowCore/ProPoller.hpp"
#include "KestrowCore/Subscription.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace kestrow {

// Main thread only. Everything handed in outlives it. The panel's window is made when it is first
// shown, then kept.
class PanelController : public PanelSurfaceClient {
 public:
  static constexpr double gap = 6;     // between the pill and the panel
  static constexpr double margin = 8;  // kept free at the other edges of the screen

  // `renderPill` draws the pill anew.
  PanelController(LocalStore& store, Poller& poller, ProPoller& pro, PillController& pill,
                  MatchPicker& picker, LoginItem& loginItem, std::function<void()> renderPill,
                  UserDefaults& defaults, Desktop& desktop);
  PanelController(const PanelController&) = delete;
  PanelController& operator=(const PanelController&) = delete;
  ~PanelController() override;

  // Opens the panel, or brings it to the front, and loads the matches anew.
  void show();
  void close();
  // What a click on the pill does: the pill is the panel's handle, so it closes what it opened.
  void toggle();
  bool isVisible() const;

  // Shows everything but the matches as it is now.
  void refresh();
  void refreshPicker();

  void pickMatch(const std::string& id);
  void retryPicker();
  // Saves what the two pop-ups say; an index below zero, no choice, counts as the first.
  void customisationChanged();
  void shareToggled(bool isOn);
  void hideToggled(bool isOn);
  void loginToggled(bool isOn);
  void openLoginItems();
  void showLoginStatus(LoginItemStatus status);
  void windowDidResignKey();

  // Where a panel with content of this height goes: centred under the pill, or under the top edge
  // when there is no pill, and no higher than what is free there. Its screen is the pill's, else
  // the main one, else the first.
  static Rect frameFor(std::span<const Screen> screens, const std::optional<Screen>& mainScreen,
                       const std::optional<Rect>& pill, double fittingHeight);

  void radioButtonPicked(const std::string& id) override;
  void popUpChanged(const std::string& id, int selected) override;
  void checkBoxToggled(const std::string& id, bool isOn) override;
  void buttonPressed(const std::string& id) override;
  void clickedOutside() override;
  bool escapePressed() override;
  void resignedKey() override;

 private:
  void update();  // hands the tree to the surface, and fits the window to it while it is open
  void position();

  LocalStore& store_;
  Poller& poller_;
  ProPoller& pro_;
  PillController& pill_;
  MatchPicker& picker_;
  LoginItem& loginItem_;
  std::function<void()> renderPill_;
  UserDefaults& defaults_;
  Desktop& desktop_;
  PanelState shown_;
  std::unique_ptr<PanelSurface> surface_;
  Subscription screensChanged_;
};

}  // namespace kestrow
