#include "Kestrow/Qt/ReduceMotionSetting.hpp"
#include "Tests/Support/QtPrivateBus.hpp"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QMap>
#include <gtest/gtest.h>

#include <memory>

namespace kestrow::qt {
namespace {

using Settings = QMap<QString, QVariantMap>;

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");
const QString common = QStringLiteral("org.freedesktop.appearance");

// Answers the settings interface as the desktop portal does.
class FakePortal final : public QDBusVirtualObject {
 public:
  FakePortal(QDBusConnection bus, Settings settings)
      : bus_(std::move(bus)), settings_(std::move(settings)) {
    qDBusRegisterMetaType<Settings>();
    bus_.registerVirtualObject(portalPath, this);
    bus_.registerService(portalName);
  }
  FakePortal(const FakePortal&) = delete;
  FakePortal& operator=(const FakePortal&) = delete;
  ~FakePortal() override {
    bus_.unregisterService(portalName);
    bus_.unregisterObject(portalPath);
  }

  int reads = 0;

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("ReadAll")) return false;
    ++reads;
    return connection.send(message.createReply(QVariant::fromValue(settings_)));
  }

  void change(const QString& space, const QString& key, const QVariant& value) {
    settings_[space][key] = value;
    auto signal =
        QDBusMessage::createSignal(portalPath, settingsInterface, QStringLiteral("SettingChanged"));
    signal << space << key << QVariant::fromValue(QDBusVariant(value));
    bus_.send(signal);
  }

 private:
  QDBusConnection bus_;
  Settings settings_;
};

class ReduceMotionSettingTest : public testing::Test {
 protected:
  FakePortal& offer(Settings settings) {
    portal_ = std::make_unique<FakePortal>(bus_.connection(QStringLiteral("portal")),
                                           std::move(settings));
    return *portal_;
  }

  ReduceMotionSetting& setting() {
    if (!setting_) {
      setting_ = std::make_unique<ReduceMotionSetting>();
      setting_->watch(bus_.connection(QStringLiteral("kestrow")));
    }
    return *setting_;
  }

  bool becomes(bool isOn) {
    return eventually([&] { return setting().isOn() == isOn; });
  }

  PrivateBus bus_;
  std::unique_ptr<FakePortal> portal_;
  std::unique_ptr<ReduceMotionSetting> setting_;
};

TEST_F(ReduceMotionSettingTest, IsOffWithoutABusAndWithoutAPortal) {
  ReduceMotionSetting withoutBus;
  withoutBus.watch(QDBusConnection(QStringLiteral("none")));
  EXPECT_FALSE(withoutBus.isOn());
  EXPECT_FALSE(setting().isOn());
}

TEST_F(ReduceMotionSettingTest, IsOnWhereTheDesktopStartedWithAnimationsOff) {
  offer({{gnome, {{QStringLiteral("enable-animations"), false}}}});
  EXPECT_TRUE(becomes(true));
}

TEST_F(ReduceMotionSettingTest, IsOffWhereTheDesktopAnimates) {
  auto& portal = offer({{gnome, {{QStringLiteral("enable-animations"), true}}},
                        {kde, {{QStringLiteral("AnimationDurationFactor"), 1.0}}},
                        {common, {{QStringLiteral("reduced-motion"), 0U}}}});
  int changes = 0;
  const auto subscription = setting().changed.subscribe([&] { ++changes; });
  EXPECT_TRUE(eventually([&] { return portal.reads == 1; }));
  QCoreApplication::processEvents();
  EXPECT_FALSE(setting().isOn());
  EXPECT_EQ(changes, 0);
}

TEST_F(ReduceMotionSettingTest, FollowsGnomesSwitchLive) {
  auto& portal = offer({{gnome, {{QStringLiteral("enable-animations"), true}}}});
  int changes = 0;
  const auto subscription = setting().changed.subscribe([&] { ++changes; });
  ASSERT_TRUE(eventually([&] { return portal.reads == 1; }));
  portal.change(gnome, QStringLiteral("enable-animations"), false);
  EXPECT_TRUE(becomes(true));
  portal.change(gnome, QStringLiteral("enable-animations"), true);
  EXPECT_TRUE(becomes(false));
  EXPECT_EQ(changes, 2);
}

TEST_F(ReduceMotionSettingTest, KdesAnimationsAtNoLengthCount) {
  auto& portal = offer({{kde, {{QStringLiteral("AnimationDurationFactor"), QStringLiteral("0")}}}});
  EXPECT_TRUE(becomes(true));
  portal.change(kde, QStringLiteral("AnimationDurationFactor"), QStringLiteral("0.5"));
  EXPECT_TRUE(becomes(false));
}

TEST_F(ReduceMotionSettingTest, TheDesktopsCommonSettingCounts) {
  offer({{common, {{QStringLiteral("reduced-motion"), 1U}}}});
  EXPECT_TRUE(becomes(true));
}

TEST_F(ReduceMotionSettingTest, APortalThatComesLaterIsAskedAndOneThatGoesIsForgotten) {
  EXPECT_FALSE(setting().isOn());
  offer({{gnome, {{QStringLiteral("enable-animations"), false}}}});
  EXPECT_TRUE(becomes(true));
  portal_.reset();
  EXPECT_TRUE(becomes(false));
}

}  // namespace
}  // namespace kestrow::qt
