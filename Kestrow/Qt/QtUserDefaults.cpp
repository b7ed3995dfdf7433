#include "Kestrow/Qt/QtUserDefaults.hpp"

#include <QString>
#include <QVariant>

namespace kestrow::qt {
namespace {

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

QtUserDefaults::QtUserDefaults()
    : settings_(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Kestrow"),
                QStringLiteral("Kestrow")) {
  settings_.setFallbacksEnabled(false);
}

// The file keeps texts only. QVariant would read every text but "false", "0" and "" as true.
bool QtUserDefaults::boolean(std::string_view key) const {
  const QString text = settings_.value(toQString(key)).toString().trimmed().toLower();
  return text == QLatin1String("true") || text == QLatin1String("1");
}

void QtUserDefaults::setBoolean(std::string_view key, bool value) {
  settings_.setValue(toQString(key), value);
  settings_.sync();
}

}  // namespace kestrow::qt
