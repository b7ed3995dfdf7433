// kestrow: composes the Linux desktop and the program, and runs the event loop.
#include "Kestrow/AppDelegate.hpp"
#include "Kestrow/Qt/QtDesktop.hpp"
#include "Kestrow/Qt/QtMainThread.hpp"
#include "Kestrow/Qt/QtProgram.hpp"
#include "Kestrow/Qt/QtUserDefaults.hpp"
#include "Kestrow/Qt/SingleInstance.hpp"
#include "Kestrow/XdgAutostart.hpp"
#include "KestrowCore/UrlSession.hpp"

#include <QApplication>
#include <QDBusConnection>
#include <QFileInfo>

#include <memory>

using namespace kestrow;

int main(int argumentCount, char** arguments) {
  qt::prepareProcess();
  const QApplication application(argumentCount, arguments);
  qt::describeProgram();

  qt::SingleInstance instance(QDBusConnection::sessionBus());
  if (!instance.claim()) return 0;

  qt::QtMainThread mainThread;
  qt::QtUserDefaults defaults;
  qt::QtDesktop desktop(instance);
  const auto session = std::make_shared<UrlSession>(mainThread);
  session->hold();  // until the pill is painted
  const auto program = QFileInfo(QApplication::applicationFilePath()).filesystemFilePath();
  AppDelegate delegate({.desktop = desktop,
                        .defaults = defaults,
                        .mainThread = mainThread,
                        .transport = urlSessionTransport(session),
                        .loginService = std::make_unique<XdgAutostart>(program),
                        .launchAgent = nullptr});
  delegate.applicationDidFinishLaunching();
  desktop.afterFirstPicture([&session, &desktop] {
    session->release();
    desktop.watch();
  });
  return QApplication::exec();
}
