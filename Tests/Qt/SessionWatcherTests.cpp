#include "Kestrow/Qt/SessionWatcher.hpp"
#include "Tests/Support/QtPrivateBus.hpp"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <gtest/gtest.h>

namespace kestrow::qt {
namespace {

const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");

// The login service with one session.
class FakeLogin final : public QDBusVirtualObject {
 public:
  FakeLogin(QDBusConnection bus, bool isLocked) : bus_(std::move(bus)), isLocked_(isLocked) {
    bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/login1/session/auto"), this);
    bus_.registerService(QStringLiteral("org.freedesktop.login1"));
  }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QVariantList wanted{sessionInterface, QStringLiteral("LockedHint")};
    if (message.member() != QLatin1String("Get") || message.arguments() != wanted) return false;
    return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(isLocked_))));
  }

  void lock(bool isLocked) {
    isLocked_ = isLocked;
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1/session/_32"),
                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("PropertiesChanged"));
    signal << sessionInterface << QVariantMap{{QStringLiteral("LockedHint"), isLocked}}
           << QStringList();
    bus_.send(signal);
  }

 private:
  QDBusConnection bus_;
  bool isLocked_;
};

class SessionWatcherTest : public testing::Test {
 protected:
  PrivateBus bus_;
  QDBusConnection kestrow_ = bus_.connection(QStringLiteral("kestrow"));
  QDBusConnection desktop_ = bus_.connection(QStringLiteral("desktop"));
};

TEST_F(SessionWatcherTest, WithoutBusesTheScreenCountsAsSeen) {
  const QDBusConnection none(QStringLiteral("none"));
  SessionWatcher watcher;
  watcher.watch(none, none);
  EXPECT_TRUE(watcher.isSeen());
}

TEST_F(SessionWatcherTest, NobodySeesALockedSession) {
  FakeLogin login(desktop_, false);
  SessionWatcher watcher;
  watcher.watch(kestrow_, kestrow_);
  EXPECT_TRUE(watcher.isSeen());
  login.lock(true);
  EXPECT_TRUE(eventually([&] { return !watcher.isSeen(); }));
  login.lock(false);
  EXPECT_TRUE(eventually([&] { return watcher.isSeen(); }));
}

TEST_F(SessionWatcherTest, ASessionThatIsLockedAtTheStartIsNoticed) {
  const FakeLogin login(desktop_, true);
  SessionWatcher watcher;
  int changes = 0;
  const auto subscription = watcher.changed.subscribe([&] { ++changes; });
  watcher.watch(kestrow_, kestrow_);
  EXPECT_TRUE(eventually([&] { return !watcher.isSeen(); }));
  EXPECT_EQ(changes, 1);
}

TEST_F(SessionWatcherTest, NobodySeesABlankedScreen) {
  SessionWatcher watcher;
  watcher.watch(kestrow_, kestrow_);
  // The bus answers in order: by then it knows of the watcher.
  EXPECT_TRUE(kestrow_.interface()->isServiceRegistered(kestrow_.baseService()));
  for (const auto* screenSaver : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) {
    for (const bool blanked : {true, false}) {
      auto signal = QDBusMessage::createSignal(QStringLiteral("/ScreenSaver"),
                                               QString::fromLatin1(screenSaver),
                                               QStringLiteral("ActiveChanged"));
      signal << blanked;
      desktop_.send(signal);
      EXPECT_TRUE(eventually([&] { return watcher.isSeen() != blanked; }))
          << screenSaver << blanked;
    }
  }
}

}  // namespace
}  // namespace kestrow::qt
