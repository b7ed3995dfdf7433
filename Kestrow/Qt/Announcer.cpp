#include "Kestrow/Qt/Announcer.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QString>
#include <QVariantMap>

namespace kestrow::qt {

void announce(std::string_view text) {
  constexpr int assertive = 2;  // the "live" politeness that interrupts
  const QDBusConnection bus(QStringLiteral("a11y"));
  if (!bus.isConnected()) return;
  auto signal = QDBusMessage::createSignal(QStringLiteral("/org/a11y/atspi/accessible/root"),
                                           QStringLiteral("org.a11y.atspi.Event.Object"),
                                           QStringLiteral("Announcement"));
  signal << QString() << assertive << 0
         << QVariant::fromValue(
                QDBusVariant(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))))
         << QVariantMap();
  bus.send(signal);
}

}  // namespace kestrow::qt
