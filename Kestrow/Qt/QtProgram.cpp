#include "Kestrow/Qt/QtProgram.hpp"

#include <QApplication>
#include <QByteArray>

#include "Kestrow/Qt/SingleInstance.hpp"

namespace kestrow::qt {

void prepareProcess() {
  // Qt does not notice assistive technology that starts after the program.
  qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
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
