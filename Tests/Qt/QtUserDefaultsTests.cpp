#include "Kestrow/Qt/QtUserDefaults.hpp"
#include "Tests/Support/Environment.hpp"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrow::qt {
namespace {

class QtUserDefaultsTest : public testing::Test {
 protected:
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
  const EnvironmentVariable config_{"XDG_CONFIG_HOME", folder_.path().toStdString()};
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

// A pipe that nobody writes into would hold up the start, and every change.
TEST_F(QtUserDefaultsTest, APipeInTheFilesPlaceHoldsNothingUpAndKeepsASwitchForThisRun) {
  QDir(folder_.path()).mkpath(QStringLiteral("Kestrow"));
  ASSERT_EQ(::mkfifo(file().toUtf8().constData(), 0600), 0);
  QtUserDefaults defaults;
  EXPECT_FALSE(defaults.boolean(DefaultsKey::pillHidden));
  defaults.setBoolean(DefaultsKey::pillHidden, true);
  EXPECT_TRUE(defaults.boolean(DefaultsKey::pillHidden));
  EXPECT_FALSE(QtUserDefaults().boolean(DefaultsKey::pillHidden));
}

TEST_F(QtUserDefaultsTest, APipeThatTakesTheFilesPlaceHoldsNoChangeUp) {
  QtUserDefaults defaults;
  defaults.setBoolean(DefaultsKey::pillHidden, true);
  ASSERT_TRUE(QFile::remove(file()));
  ASSERT_EQ(::mkfifo(file().toUtf8().constData(), 0600), 0);
  defaults.setBoolean(DefaultsKey::pillHidden, false);
  EXPECT_FALSE(defaults.boolean(DefaultsKey::pillHidden));
}

TEST_F(QtUserDefaultsTest, AVeryLongFileReadsAsOffAndIsLeftAlone) {
  write("[General]\npillHidden=true\n" + QByteArray(1 << 20, ';'));
  QtUserDefaults defaults;
  EXPECT_FALSE(defaults.boolean(DefaultsKey::pillHidden));
  const QByteArray before = read();
  defaults.setBoolean(DefaultsKey::showInScreenShares, true);
  EXPECT_TRUE(defaults.boolean(DefaultsKey::showInScreenShares));
  EXPECT_EQ(read(), before);
}

}  // namespace
}  // namespace kestrow::qt
