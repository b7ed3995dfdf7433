#include "KestrowCore/LaunchAgentWriter.hpp"
#include "KestrowCore/LoginItem.hpp"
#include "Tests/Support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrow {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A desktop in the test's hand; calls are written down.
struct Desktop {
  LoginServiceStatus status = LoginServiceStatus::notRegistered;
  std::optional<LoginServiceStatus> statusOnceRegistered;
  std::optional<LoginServiceStatus> statusOnceUnregistered;
  bool agentInstalled = false;
  bool agentFails = false;
  bool serviceFails = false;
  std::vector<std::string> calls;

  std::expected<void, LoginError> outcome(bool fails) const {
    if (fails) return std::unexpected(LoginError{.description = "refused"});
    return {};
  }
};

class Service : public LoginService {
 public:
  explicit Service(Desktop& desktop) : desktop_(desktop) {}
  LoginServiceStatus status() const override { return desktop_.status; }
  std::expected<void, LoginError> registerItem() override {
    desktop_.calls.emplace_back("register");
    desktop_.status = desktop_.statusOnceRegistered.value_or(desktop_.status);
    return desktop_.outcome(desktop_.serviceFails);
  }
  std::expected<void, LoginError> unregister() override {
    desktop_.calls.emplace_back("unregister");
    desktop_.status = desktop_.statusOnceUnregistered.value_or(desktop_.status);
    return desktop_.outcome(desktop_.serviceFails);
  }
  void openLoginItemsSettings() override { desktop_.calls.emplace_back("settings"); }

 private:
  Desktop& desktop_;
};

class Agent : public LaunchAgentFile {
 public:
  explicit Agent(Desktop& desktop) : desktop_(desktop) {}
  bool isInstalled() const override { return desktop_.agentInstalled; }
  std::expected<void, LoginError> install() override { return set("install", true); }
  std::expected<void, LoginError> remove() override { return set("remove", false); }

 private:
  std::expected<void, LoginError> set(const char* call, bool installed) {
    desktop_.calls.emplace_back(call);
    if (!desktop_.agentFails) desktop_.agentInstalled = installed;
    return desktop_.outcome(desktop_.agentFails);
  }
  Desktop& desktop_;
};

class LoginItemTest : public testing::Test {
 public:
  Desktop desktop;
  LoginItem item{std::make_unique<Service>(desktop), std::make_unique<Agent>(desktop)};
};

TEST(LoginItemStatus, SaysWhatThePanelShows) {
  const auto texts = [](LoginItemStatus status) { return std::string(statusText(status)); };
  EXPECT_EQ(texts(LoginItemStatus::on), "On");
  EXPECT_EQ(texts(LoginItemStatus::needsApproval), "Needs approval in System Settings");
  EXPECT_EQ(texts(LoginItemStatus::onFallback), "On (fallback)");
  EXPECT_EQ(texts(LoginItemStatus::off), "Off");
  EXPECT_TRUE(isOn(LoginItemStatus::on));
  EXPECT_TRUE(isOn(LoginItemStatus::needsApproval));
  EXPECT_TRUE(isOn(LoginItemStatus::onFallback));
  EXPECT_FALSE(isOn(LoginItemStatus::off));
  EXPECT_FALSE(showsLoginItemsButton(LoginItemStatus::on));
  EXPECT_TRUE(showsLoginItemsButton(LoginItemStatus::needsApproval));
  EXPECT_FALSE(showsLoginItemsButton(LoginItemStatus::onFallback));
  EXPECT_FALSE(showsLoginItemsButton(LoginItemStatus::off));
  EXPECT_STREQ(loginItemsButtonText, "Open Login Items Settings\u2026");
}

TEST_F(LoginItemTest, TheServiceIsAskedFirstThenTheFile) {
  for (const bool installed : {false, true}) {
    desktop.agentInstalled = installed;
    const auto withoutService = installed ? LoginItemStatus::onFallback : LoginItemStatus::off;
    desktop.status = LoginServiceStatus::enabled;
    EXPECT_EQ(item.status(), LoginItemStatus::on);
    desktop.status = LoginServiceStatus::requiresApproval;
    EXPECT_EQ(item.status(), LoginItemStatus::needsApproval);
    desktop.status = LoginServiceStatus::notRegistered;
    EXPECT_EQ(item.status(), withoutService);
    desktop.status = LoginServiceStatus::notFound;
    EXPECT_EQ(item.status(), withoutService);
  }
  EXPECT_THAT(desktop.calls, IsEmpty());
}

TEST_F(LoginItemTest, TurnedOnByTheServiceItRemovesAnOlderFile) {
  desktop.agentInstalled = true;
  desktop.statusOnceRegistered = LoginServiceStatus::enabled;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::on);
  EXPECT_FALSE(desktop.agentInstalled);
  EXPECT_THAT(desktop.calls, ElementsAre("register", "remove"));
}

TEST_F(LoginItemTest, AFileThatCannotBeRemovedDoesNotKeepTheServiceFromBeingOn) {
  desktop.agentInstalled = true;
  desktop.agentFails = true;
  desktop.statusOnceRegistered = LoginServiceStatus::enabled;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::on);
}

TEST_F(LoginItemTest, WaitingForApprovalItLeavesTheFileAsItIs) {
  desktop.agentInstalled = true;
  desktop.statusOnceRegistered = LoginServiceStatus::requiresApproval;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::needsApproval);
  EXPECT_TRUE(desktop.agentInstalled);
  EXPECT_THAT(desktop.calls, ElementsAre("register"));
}

TEST_F(LoginItemTest, WithoutTheServiceTheFileIsInstalled) {
  desktop.serviceFails = true;
  for (const auto status : {LoginServiceStatus::notRegistered, LoginServiceStatus::notFound}) {
    desktop.status = status;
    desktop.agentInstalled = false;
    desktop.calls.clear();
    EXPECT_EQ(item.setEnabled(true), LoginItemStatus::onFallback);
    EXPECT_TRUE(desktop.agentInstalled);
    EXPECT_THAT(desktop.calls, ElementsAre("register", "install"));
  }
}

TEST_F(LoginItemTest, AFileThatCannotBeWrittenShowsAsChosenAndThenAsOff) {
  desktop.status = LoginServiceStatus::notFound;
  desktop.agentFails = true;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::onFallback);
  EXPECT_EQ(item.status(), LoginItemStatus::off);
}

TEST_F(LoginItemTest, ARefusalOfAServiceThatIsOnAlreadyDoesNotMatter) {
  desktop.status = LoginServiceStatus::enabled;
  desktop.serviceFails = true;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::on);
}

TEST_F(LoginItemTest, TurningItOffUnregistersAndRemovesTheFile) {
  desktop.status = LoginServiceStatus::enabled;
  desktop.statusOnceUnregistered = LoginServiceStatus::notRegistered;
  desktop.agentInstalled = true;
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::off);
  EXPECT_FALSE(desktop.agentInstalled);
  EXPECT_THAT(desktop.calls, ElementsAre("unregister", "remove"));
}

TEST_F(LoginItemTest, WhatCouldNotBeTurnedOffShows) {
  desktop.serviceFails = true;
  desktop.agentFails = true;
  desktop.status = LoginServiceStatus::enabled;
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::on);
  desktop.status = LoginServiceStatus::requiresApproval;
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::needsApproval);
  desktop.status = LoginServiceStatus::notFound;
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::off);
  desktop.agentInstalled = true;
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::onFallback);
}

TEST_F(LoginItemTest, WithoutASecondWayTheServiceAloneTells) {
  LoginItem single(std::make_unique<Service>(desktop), nullptr);
  desktop.serviceFails = true;
  EXPECT_EQ(single.status(), LoginItemStatus::off);
  EXPECT_EQ(single.setEnabled(true), LoginItemStatus::off);
  desktop.serviceFails = false;
  desktop.statusOnceRegistered = LoginServiceStatus::enabled;
  EXPECT_EQ(single.setEnabled(true), LoginItemStatus::on);
  desktop.statusOnceUnregistered = LoginServiceStatus::notRegistered;
  EXPECT_EQ(single.setEnabled(false), LoginItemStatus::off);
}

// The two ways together, with files that are really there.
class LoginItemWithFileTest : public testing::Test {
 public:
  TemporaryFolder folder;
  LaunchAgentWriter writer{folder.path() / "LaunchAgents"};
  Desktop desktop;
  LoginItem item{std::make_unique<Service>(desktop), std::make_unique<LaunchAgentWriter>(writer)};
};

TEST_F(LoginItemWithFileTest, AFolderThatCannotBeWrittenShowsAsChosenAndThenAsOff) {
  writeFile(folder.path() / "LaunchAgents", "a file in the way");
  desktop.statusOnceRegistered = LoginServiceStatus::notFound;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::onFallback);
  EXPECT_EQ(item.status(), LoginItemStatus::off);
}

TEST_F(LoginItemWithFileTest, TheFileComesWithTheFallbackAndGoesWithTheService) {
  desktop.status = LoginServiceStatus::notFound;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::onFallback);
  EXPECT_TRUE(writer.isInstalled());
  EXPECT_EQ(item.status(), LoginItemStatus::onFallback);
  desktop.status = LoginServiceStatus::enabled;
  EXPECT_EQ(item.setEnabled(true), LoginItemStatus::on);
  EXPECT_FALSE(writer.isInstalled());
}

TEST_F(LoginItemWithFileTest, TurningItOffWithoutAFileIsNoFailure) {
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::off);
  desktop.status = LoginServiceStatus::requiresApproval;
  EXPECT_EQ(item.setEnabled(false), LoginItemStatus::needsApproval);
}

TEST_F(LoginItemTest, OpensTheSystemsSettings) {
  item.openLoginItemsSettings();
  EXPECT_THAT(desktop.calls, ElementsAre("settings"));
}

}  // namespace
}  // namespace kestrow
