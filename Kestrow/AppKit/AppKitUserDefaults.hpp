// The user's switches in the standard user defaults.
#pragma once

#include "Kestrow/Platform/UserDefaults.hpp"

#include <string_view>

namespace kestrow::appkit {

class AppKitUserDefaults final : public UserDefaults {
 public:
  bool boolean(std::string_view key) const override;
  void setBoolean(std::string_view key, bool value) override;
};

}  // namespace kestrow::appkit
