// The port for the user's switches, kept where the desktop keeps settings.
#pragma once

#include <string_view>

namespace kestrow {

class UserDefaults {
 public:
  virtual ~UserDefaults() = default;
  // False when it was never set or is no truth value.
  virtual bool boolean(std::string_view key) const = 0;
  virtual void setBoolean(std::string_view key, bool value) = 0;
};

struct DefaultsKey {
  static constexpr std::string_view pillHidden = "pillHidden";
  static constexpr std::string_view showInScreenShares = "showInScreenShares";
};

}  // namespace kestrow
