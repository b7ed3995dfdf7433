// The user's switches in the settings file that the desktop's programs use.
#pragma once

#include "Kestrow/Platform/UserDefaults.hpp"

#include <QHash>
#include <QSettings>
#include <QString>

#include <filesystem>
#include <optional>
#include <string_view>

namespace kestrow::qt {

// Main thread only. A value is on its way to the disk when setBoolean returns. A settings file that
// can't be written, or is none (a pipe, a folder, a mebibyte and more), keeps the value for this
// run only.
class QtUserDefaults final : public UserDefaults {
 public:
  // By default the file "Kestrow/Kestrow.conf" in the user's configuration folder.
  explicit QtUserDefaults(const std::filesystem::path& file = defaultFile());

  static std::filesystem::path defaultFile();

  bool boolean(std::string_view key) const override;
  void setBoolean(std::string_view key, bool value) override;

 private:
  QString file_;
  std::optional<QSettings> settings_;  // nothing when the file was none at the start
  QHash<QString, bool> kept_;          // what could not go there
};

}  // namespace kestrow::qt
