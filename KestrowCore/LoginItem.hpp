// Launch at login: the desktop's own login-item service, with a launch agent file as the fallback.
#pragma once

#include <expected>
#include <memory>
#include <string>

namespace kestrow {

enum class LoginServiceStatus { enabled, requiresApproval, notRegistered, notFound };

// Why the desktop refused, for whoever wants to know; the user sees the status.
struct LoginError {
  std::string description;
  bool operator==(const LoginError&) const = default;
};

// The desktop's login-item service.
class LoginService {
 public:
  virtual ~LoginService() = default;
  virtual LoginServiceStatus status() const = 0;
  virtual std::expected<void, LoginError> registerItem() = 0;  // `register` is C++'s word
  virtual std::expected<void, LoginError> unregister() = 0;
  virtual void openLoginItemsSettings() = 0;
};

// A file that makes the system open the program at login.
class LaunchAgentFile {
 public:
  virtual ~LaunchAgentFile() = default;
  virtual bool isInstalled() const = 0;
  virtual std::expected<void, LoginError> install() = 0;
  virtual std::expected<void, LoginError> remove() = 0;
};

enum class LoginItemStatus { on, needsApproval, onFallback, off };

bool isOn(LoginItemStatus status);
const char* statusText(LoginItemStatus status);  // "On", "Off", …
bool showsLoginItemsButton(LoginItemStatus status);
inline constexpr const char* loginItemsButtonText = "Open Login Items Settings…";

class LoginItem {
 public:
  // `agent` may be null: a desktop without a second way.
  LoginItem(std::unique_ptr<LoginService> service, std::unique_ptr<LaunchAgentFile> agent);

  LoginItemStatus status() const;

  // Turns it on or off as far as the desktop lets it, and gives what came of it. Never fails.
  LoginItemStatus setEnabled(bool enabled);

  void openLoginItemsSettings();

 private:
  std::unique_ptr<LoginService> service_;
  std::unique_ptr<LaunchAgentFile> agent_;
};

}  // namespace kestrow
