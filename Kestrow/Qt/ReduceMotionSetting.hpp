// The desktop's own setting for less motion.
#pragma once

#include "KestrowCore/Subscription.hpp"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>

#include <map>
#include <utility>

namespace kestrow::qt {

// Asks the desktop portal, which knows the settings of GNOME, KDE and those like them, and follows
// it live. False until it answered, and where there is no portal.
class ReduceMotionSetting final : public QObject {
  Q_OBJECT

 public:
  // Begins to listen.
  void watch(QDBusConnection bus);

  bool isOn() const { return isOn_; }
  Signal changed;

 private Q_SLOTS:
  void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

 private:
  using Key = std::pair<QString, QString>;

  void readAll();
  void forget();
  void decide();

  QDBusConnection bus_{QString()};
  std::map<Key, QVariant> values_;
  bool isOn_ = false;
};

}  // namespace kestrow::qt
