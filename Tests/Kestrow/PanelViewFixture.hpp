// The panel with all that it speaks to: its window recorded, lists and login service in the test's
// hand.
#pragma once

#include "Kestrow/PanelView.hpp"
#include "KestrowCore/Task.hpp"
#include "Tests/Support/FakeDesktop.hpp"
#include "Tests/Support/ManualMainThread.hpp"
#include "Tests/Support/Records.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {

// A login service in the test's hand.
struct Login {
  LoginServiceStatus status = LoginServiceStatus::notRegistered;
  bool isRefused = false;
  int settingsOpened = 0;
};

class FakeLoginService final : public LoginService {
 public:
  explicit FakeLoginService(Login& login) : login_(login) {}
  LoginServiceStatus status() const override { return login_.status; }
  std::expected<void, LoginError> registerItem() override {
    if (!login_.isRefused) login_.status = LoginServiceStatus::enabled;
    return {};
  }
  std::expected<void, LoginError> unregister() override {
    if (!login_.isRefused) login_.status = LoginServiceStatus::notRegistered;
    return {};
  }
  void openLoginItemsSettings() override { ++login_.settingsOpened; }

 private:
  Login& login_;
};

class PanelControllerTest : public testing::Test {
 protected:
  using Answer = FeedResult<MatchesResponse>;

  PanelControllerTest() { desktop_.excludesFromCaptures = true; }

  PanelController& panel() { return *panel_; }
  PanelSurfaceRecord& surface() { return *desktop_.panels.at(0); }
  PanelSurfaceClient& client() { return *surface().client; }

  void answer(Answer response) {
    ASSERT_FALSE(loads_.empty());
    loads_.back().complete(std::move(response));
  }
  void openWithMatches() {
    panel().show();
    answer(records::live({records::match("m1"), records::match("m2")}));
  }
  void pick(std::string_view matchId, int occurrence = 1) {
    client().radioButtonPicked(panel_nodes::idOfMatch(matchId, occurrence));
  }
  const PanelCheckBox& checkBox(std::string_view id) { return *surface().find<PanelCheckBox>(id); }
  int selected(std::string_view id) { return surface().find<PanelPopUp>(id)->selected; }
  std::vector<std::string> matchesOn() {
    std::vector<std::string> ids;
    for (const auto& node : surface().find<PanelBox>("matches")->nodes) {
      const auto* radio = std::get_if<PanelRadioButton>(&node.kind);
      if (radio && radio->isOn) ids.push_back(panel_nodes::matchOf(node.id).value());
    }
    return ids;
  }
  // The only text of the picker.
  std::string pickerText() {
    const auto& nodes = surface().find<PanelBox>("matches")->nodes;
    return std::get<PanelLabel>(nodes.at(0).kind).text;
  }

  TemporaryFolder folder_;
  LocalStore store_{folder_.path()};
  ManualMainThread mainThread_;
  FakeDesktop desktop_;
  FakeDefaults defaults_;
  std::vector<Pending<Answer>> loads_;
  std::vector<std::string> renders_;
  Login login_;
  Poller poller_{[] { return Pending<Answer>().task(); },
                 std::make_unique<TaskPollScheduler>(mainThread_), &store_};
  Pending<FeedResult<ProMatchResult>> events_;
  ProPoller pro_{[this](const std::string&, std::optional<std::int64_t>) { return events_.task(); },
                 store_, mainThread_.clock()};
  PillController pill_{{}, defaults_, desktop_};
  MatchPicker picker_{[this] { return loads_.emplace_back().task(); }, std::nullopt,
                      [](Date) { return std::string("soon"); }};
  LoginItem loginItem_{std::make_unique<FakeLoginService>(login_), nullptr};
  std::unique_ptr<PanelController> panel_ = std::make_unique<PanelController>(
      store_, poller_, pro_, pill_, picker_, loginItem_, [this] { renders_.emplace_back("pill"); },
      defaults_, desktop_);
};

}  // namespace kestrow
