// The user's switches in the settings file that the desktop's programs use.
#pragma once

#include "Kestrow/Platform/UserDefaults.hpp"

#include <QSettings>

#include <string_view>

namespace kestrow::qt {

// Main thread only. A value is on its way to the disk when setBoolean returns; a settings file that
// can't be written keeps the value for this run only.
class QtUserDefaults final : public UserDefaults {
 public:
  // The file "Kestrow/Kestrow.conf" in the user's configuration folder.
  QtUserDefaults();

  bool boolean(std::string_view key) const override;
  void setBoolean(std::string_view key, bool value) override;

 private:
  QSettings settings_;
};

}  // namespace kestrow::qt
