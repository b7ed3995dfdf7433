#include "Kestrow/Qt/QtProgram.hpp"

#include "Kestrow/Qt/SingleInstance.hpp"
#include "KestrowCore/FreedMemory.hpp"

#include <QApplication>
#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>

namespace kestrow::qt {
namespace {

// Without an address the bus library would start a bus of its own, which outlives the program and
// which nobody else is on. What a login session has besides the variable is the socket below; where
// that is missing too, there is no session bus.
void findSessionBus() {
  constexpr auto variable = "DBUS_SESSION_BUS_ADDRESS";
  if (!qEnvironmentVariableIsEmpty(variable)) return;
  const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
  qputenv(variable, QFileInfo::exists(socket) ? "unix:path=" + QFile::encodeName(socket)
                                              : QByteArray("disabled:"));
}

}  // namespace

void prepareProcess() {
  returnFreedMemory();
  findSessionBus();
  // Qt does not notice assistive technology that starts after the program.
  qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
  // In memory that it shares with the X server, Qt waits before each picture until the server has
  // read the one before, which wakes the program more often than the pulse itself. The pill's
  // pictures are small enough to be sent, and the panel's are few.
  qputenv("QT_XCB_NO_MITSHM", "1");
  // Wayland gives no client a place at the screen's top edge; its X server does.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "xcb");
  }
}

void describeProgram() {
  QApplication::setApplicationName(QStringLiteral("Kestrow"));
  QApplication::setApplicationDisplayName(QStringLiteral("Kestrow"));
  QApplication::setDesktopFileName(QString::fromLatin1(SingleInstance::busName));
  QApplication::setQuitOnLastWindowClosed(false);
}

}  // namespace kestrow::qt
