#include "Kestrow/Qt/QtUserDefaults.hpp"

#include "KestrowCore/Identity.hpp"
#include "KestrowCore/UserFolders.hpp"

#include <QFile>
#include <QFileInfo>
#include <QVariant>

#include <string>

namespace kestrow::qt {
namespace {

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// QSettings would wait for somebody to write into a pipe, and read gigabytes to their end.
bool isSettingsFile(const QString& file) {
  constexpr qint64 longest = 1 << 20;
  const QFileInfo info(file);
  return !info.exists() || (info.isFile() && info.size() < longest);
}

}  // namespace

QtUserDefaults::QtUserDefaults(const std::filesystem::path& file)
    : file_(QFile::decodeName(file.c_str())) {
  if (isSettingsFile(file_)) settings_.emplace(file_, QSettings::NativeFormat);
}

std::filesystem::path QtUserDefaults::defaultFile() {
  const std::string name(identity::name);
  return user_folders::xdg("XDG_CONFIG_HOME", ".config") / name / (name + ".conf");
}

// The file keeps texts only. QVariant would read every text but "false", "0" and "" as true.
bool QtUserDefaults::boolean(std::string_view key) const {
  const QString name = toQString(key);
  if (!settings_ || kept_.contains(name)) return kept_.value(name);
  const QString text = settings_->value(name).toString().trimmed().toLower();
  return text == QLatin1String("true") || text == QLatin1String("1");
}

void QtUserDefaults::setBoolean(std::string_view key, bool value) {
  const QString name = toQString(key);
  if (!settings_ || !isSettingsFile(file_)) {
    kept_.insert(name, value);
    return;
  }
  kept_.remove(name);
  settings_->setValue(name, value);
  settings_->sync();
}

}  // namespace kestrow::qt
