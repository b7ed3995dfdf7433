// The user's switches in the standard user defaults.
#pragma once

#include <string_view>

#include "Kestrow/Platform/UserDefaults.hpp"

namespace kestrow::appkit {

class AppKitUserDefaults final : public UserDefaults {
 public:
  bool boolean(std::string_view key) const override;
  void setBoolean(std::string_view key, bool value) override;
};

}  // namespace kestrow::appkit
