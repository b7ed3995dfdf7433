// One Kestrow for each session: a second one asks the first to come forward.
#pragma once

#include "KestrowCore/Identity.hpp"
#include "KestrowCore/Subscription.hpp"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace kestrow::qt {

// Owns the program's name on the session bus, and answers there as desktops ask a program to open:
// through org.freedesktop.Application.
class SingleInstance final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  static constexpr const char* busName = identity::bundleIdentifier;
  static constexpr const char* objectPath = "/org/kestrow/Kestrow";

  explicit SingleInstance(QDBusConnection bus);
  ~SingleInstance() override;

  // Takes the name. False when another process has it: that one was asked to open, and this one has
  // nothing to do. Without a bus nobody can be asked, and every process is the first.
  bool claim();

  // Somebody opened the program again.
  Signal reopened;

  // The interface's methods, named by it.
  // NOLINTBEGIN(readability-identifier-naming)
 public Q_SLOTS:
  void Activate(const QVariantMap& platformData);
  void Open(const QStringList& uris, const QVariantMap& platformData);
  void ActivateAction(const QString& name, const QVariantList& parameter,
                      const QVariantMap& platformData);
  // NOLINTEND(readability-identifier-naming)

 private:
  bool askTheOther() const;

  QDBusConnection bus_;
};

}  // namespace kestrow::qt
