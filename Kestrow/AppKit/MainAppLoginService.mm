#include "Kestrow/AppKit/MainAppLoginService.hpp"

#import <ServiceManagement/ServiceManagement.h>

#include "Kestrow/AppKit/Strings.hpp"

namespace kestrow::appkit {

namespace {

std::expected<void, LoginError> outcome(bool isDone, NSError* _Nullable error) {
  if (isDone) return {};
  return std::unexpected(LoginError{toUtf8(error.localizedDescription)});
}

}  // namespace

LoginServiceStatus MainAppLoginService::status() const {
  switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusNotRegistered:
      return LoginServiceStatus::notRegistered;
    case SMAppServiceStatusEnabled:
      return LoginServiceStatus::enabled;
    case SMAppServiceStatusRequiresApproval:
      return LoginServiceStatus::requiresApproval;
    case SMAppServiceStatusNotFound:
      break;
  }
  return LoginServiceStatus::notFound;
}

std::expected<void, LoginError> MainAppLoginService::registerItem() {
  NSError* error = nil;
  const bool isDone = [SMAppService.mainAppService registerAndReturnError:&error];
  return outcome(isDone, error);
}

std::expected<void, LoginError> MainAppLoginService::unregister() {
  NSError* error = nil;
  const bool isDone = [SMAppService.mainAppService unregisterAndReturnError:&error];
  return outcome(isDone, error);
}

void MainAppLoginService::openLoginItemsSettings() {
  [SMAppService openSystemSettingsLoginItems];
}

}  // namespace kestrow::appkit
