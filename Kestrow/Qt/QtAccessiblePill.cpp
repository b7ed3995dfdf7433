#include "Kestrow/Qt/QtAccessiblePill.hpp"

#include "Kestrow/Qt/QtPillWindow.hpp"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QString>
#include <QStringList>

namespace kestrow::qt {

namespace {

class AccessiblePill final : public QAccessibleWidget {
 public:
  explicit AccessiblePill(QtPillWindow& window)
      : QAccessibleWidget(&window, QAccessible::Button), window_(window) {}

  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& name) override {
    if (name == pressAction()) window_.press();
  }

 private:
  QtPillWindow& window_;
};

QAccessibleInterface* makeAccessiblePill(const QString& /*className*/, QObject* object) {
  auto* window = qobject_cast<QtPillWindow*>(object);
  return window ? new AccessiblePill(*window) : nullptr;  // Qt's registry owns it
}

}  // namespace

void installAccessiblePill() {
  QAccessible::installFactory(makeAccessiblePill);
}

}  // namespace kestrow::qt
