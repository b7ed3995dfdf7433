#include "Kestrow/Qt/SingleInstance.hpp"
#include "Tests/Support/QtPrivateBus.hpp"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <gtest/gtest.h>

#include <future>

namespace kestrow::qt {
namespace {

TEST(SingleInstance, WithoutABusEveryProcessIsTheFirst) {
  SingleInstance instance(QDBusConnection(QStringLiteral("no such connection")));
  EXPECT_TRUE(instance.claim());
}

TEST(SingleInstance, TheFirstHasTheNameUntilItEnds) {
  PrivateBus bus;
  SingleInstance instance(bus.connection(QStringLiteral("first")));
  EXPECT_TRUE(instance.claim());
  const auto owner = bus.connection(QStringLiteral("asking"))
                         .interface()
                         ->serviceOwner(QString::fromLatin1(SingleInstance::busName));
  EXPECT_EQ(owner.value(), bus.connection(QStringLiteral("first")).baseService());
}

TEST(SingleInstance, TheSecondAsksTheFirstToOpenAndStandsBack) {
  PrivateBus bus;
  SingleInstance first(bus.connection(QStringLiteral("first")));
  ASSERT_TRUE(first.claim());
  int reopened = 0;
  const auto subscription = first.reopened.subscribe([&] { ++reopened; });

  auto second = std::async(std::launch::async, [&] {
    SingleInstance instance(bus.connection(QStringLiteral("second")));
    return instance.claim();
  });
  EXPECT_TRUE(eventually([&] { return reopened == 1; }));
  EXPECT_FALSE(second.get());
}

TEST(SingleInstance, AnswersEveryWayInWhichADesktopOpensAProgram) {
  PrivateBus bus;
  SingleInstance first(bus.connection(QStringLiteral("first")));
  ASSERT_TRUE(first.claim());
  int reopened = 0;
  const auto subscription = first.reopened.subscribe([&] { ++reopened; });

  const auto call = [&](const char* method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(QString::fromLatin1(SingleInstance::busName),
                                                  QString::fromLatin1(SingleInstance::objectPath),
                                                  QStringLiteral("org.freedesktop.Application"),
                                                  QString::fromLatin1(method));
    message.setArguments(arguments);
    bus.connection(QStringLiteral("desktop")).asyncCall(message);
  };
  call("Activate", {QVariantMap()});
  call("Open", {QStringList{QStringLiteral("file:///tmp")}, QVariantMap()});
  call("ActivateAction", {QStringLiteral("show"), QVariantList(), QVariantMap()});
  EXPECT_TRUE(eventually([&] { return reopened == 3; }));
}

}  // namespace
}  // namespace kestrow::qt
