#include "Kestrow/Qt/QtUserDefaults.hpp"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kestrow::qt {
namespace {

class QtUserDefaultsTest : public testing::Test {
 protected:
  QtUserDefaultsTest() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder_.path());
  }

  QString file() const { return folder_.filePath(QStringLiteral("Kestrow/Kestrow.conf")); }

  void write(const QByteArray& content) const {
    QDir(folder_.path()).mkpath(QStringLiteral("Kestrow"));
    QFile out(file());
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(content);
  }

  QByteArray read() const {
    QFile in(file());
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
  }

  QTemporaryDir folder_;
};

TEST_F(QtUserDefaultsTest, ASwitchThatWasNeverSetIsOff) {
  EXPECT_FALSE(QtUserDefaults().boolean(DefaultsKey::pillHidden));
}

TEST_F(QtUserDefaultsTest, KeepsASwitchInTheUsersSettingsFile) {
  QtUserDefaults().setBoolean(DefaultsKey::pillHidden, true);
  EXPECT_TRUE(read().contains("pillHidden=true"));
  EXPECT_TRUE(QtUserDefaults().boolean(DefaultsKey::pillHidden));
  EXPECT_FALSE(QtUserDefaults().boolean(DefaultsKey::showInScreenShares));
  QtUserDefaults().setBoolean(DefaultsKey::pillHidden, false);
  EXPECT_FALSE(QtUserDefaults().boolean(DefaultsKey::pillHidden));
}

TEST_F(QtUserDefaultsTest, IsOnDiskWhenTheCallReturns) {
  QtUserDefaults defaults;
  defaults.setBoolean(DefaultsKey::showInScreenShares, true);
  EXPECT_TRUE(read().contains("showInScreenShares=true"));
}

TEST_F(QtUserDefaultsTest, WhatIsNoTruthValueIsOff) {
  write("[General]\npillHidden=perhaps\nshowInScreenShares=1\n");
  EXPECT_FALSE(QtUserDefaults().boolean(DefaultsKey::pillHidden));
  EXPECT_TRUE(QtUserDefaults().boolean(DefaultsKey::showInScreenShares));
}

TEST_F(QtUserDefaultsTest, AFileThatIsNoSettingsFileReadsAsOff) {
  write(QByteArray("\0\xff[[[=\n", 8));
  EXPECT_FALSE(QtUserDefaults().boolean(DefaultsKey::pillHidden));
}

}  // namespace
}  // namespace kestrow::qt
