#include "KestrowCore/LoginItem.hpp"

#include <utility>

namespace kestrow {

bool isOn(LoginItemStatus status) {
  return status != LoginItemStatus::off;
}

const char* statusText(LoginItemStatus status) {
  switch (status) {
    case LoginItemStatus::on:
      return "On";
    case LoginItemStatus::needsApproval:
      return "Needs approval in System Settings";
    case LoginItemStatus::onFallback:
      return "On (fallback)";
    case LoginItemStatus::off:
      break;
  }
  return "Off";
}

bool showsLoginItemsButton(LoginItemStatus status) {
  return status == LoginItemStatus::needsApproval;
}

LoginItem::LoginItem(std::unique_ptr<LoginService> service, std::unique_ptr<LaunchAgentFile> agent)
    : service_(std::move(service)), agent_(std::move(agent)) {}

LoginItemStatus LoginItem::status() const {
  switch (service_->status()) {
    case LoginServiceStatus::enabled:
      return LoginItemStatus::on;
    case LoginServiceStatus::requiresApproval:
      return LoginItemStatus::needsApproval;
    case LoginServiceStatus::notRegistered:
    case LoginServiceStatus::notFound:
      break;
  }
  return agent_ && agent_->isInstalled() ? LoginItemStatus::onFallback : LoginItemStatus::off;
}

LoginItemStatus LoginItem::setEnabled(bool enabled) {
  if (!enabled) {
    (void)service_->unregister();
    if (agent_) (void)agent_->remove();
    return status();
  }
  (void)service_->registerItem();
  switch (service_->status()) {
    case LoginServiceStatus::enabled:
      // An older launch agent would start the program a second time.
      if (agent_) (void)agent_->remove();
      return LoginItemStatus::on;
    case LoginServiceStatus::requiresApproval:
      return LoginItemStatus::needsApproval;
    case LoginServiceStatus::notRegistered:
    case LoginServiceStatus::notFound:
      break;
  }
  if (!agent_) return LoginItemStatus::off;
  // The switch shows what the user chose, even where the file could not be written.
  (void)agent_->install();
  return LoginItemStatus::onFallback;
}

void LoginItem::openLoginItemsSettings() {
  service_->openLoginItemsSettings();
}

}  // namespace kestrow
