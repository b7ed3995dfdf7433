#include "Kestrow/Qt/SingleInstance.hpp"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <chrono>
#include <utility>

namespace kestrow::qt {

SingleInstance::SingleInstance(QDBusConnection bus) : bus_(std::move(bus)) {}

SingleInstance::~SingleInstance() {
  bus_.unregisterObject(QString::fromLatin1(objectPath));
}

bool SingleInstance::claim() {
  if (!bus_.isConnected()) return true;
  // The object comes before the name: who sees the name may call at once.
  bus_.registerObject(QString::fromLatin1(objectPath), this, QDBusConnection::ExportAllSlots);
  // The other may end between being found and being asked; then the name is free again.
  for (int attempt = 0; attempt < 3; ++attempt) {
    const auto reply = bus_.interface()->registerService(QString::fromLatin1(busName));
    if (!reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered) {
      return true;
    }
    if (askTheOther()) return false;
  }
  return false;
}

// Waits for the answer only as long as a person would; an instance too busy to answer still has the
// request and opens later.
bool SingleInstance::askTheOther() const {
  constexpr std::chrono::milliseconds patience{2000};
  auto call = QDBusMessage::createMethodCall(
      QString::fromLatin1(busName), QString::fromLatin1(objectPath),
      QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
  call.setAutoStartService(false);
  call << QVariantMap();
  const auto answer = bus_.call(call, QDBus::Block, static_cast<int>(patience.count()));
  return answer.type() == QDBusMessage::ReplyMessage ||
         answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply");
}

void SingleInstance::Activate(const QVariantMap& /*platformData*/) {
  reopened.notify();
}

// There is nothing to open but the program itself.
void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) {
  reopened.notify();
}

void SingleInstance::ActivateAction(const QString& /*name*/, const QVariantList& /*parameter*/,
                                    const QVariantMap& /*platformData*/) {
  reopened.notify();
}

}  // namespace kestrow::qt
