#include "Kestrow/Qt/QtAccessiblePanel.hpp"

#include "Kestrow/Qt/PanelColumn.hpp"
#include "Kestrow/Qt/PanelControls.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelRows.hpp"
#include "Kestrow/Qt/QtPanelWindow.hpp"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <map>

namespace kestrow::qt {

namespace {

class AccessibleHeading final : public QAccessibleWidget {
 public:
  explicit AccessibleHeading(HeadingLabel& label)
      : QAccessibleWidget(&label, QAccessible::Heading), label_(label) {}

  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Name ? label_.text() : QAccessibleWidget::text(which);
  }

 private:
  HeadingLabel& label_;
};

// A row with a mark, whole: Qt's own element is as small as the mark, and changes it without anyone
// being told that the user did.
class AccessibleRow final : public QAccessibleWidget {
 public:
  AccessibleRow(QAbstractButton& row, QAccessible::Role role)
      : QAccessibleWidget(&row, role), row_(row) {}

  QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = row_.isChecked();
    return state;
  }
  QStringList actionNames() const override { return {toggleAction(), setFocusAction()}; }
  void doAction(const QString& name) override {
    if (!row_.isEnabled()) return;
    if (name == toggleAction()) row_.click();
    if (name == setFocusAction()) row_.setFocus();
  }

 private:
  QAbstractButton& row_;
};

// One line of the log. Lines come in at the top, so a line is known by its place from the end.
class AccessibleLine final : public QAccessibleInterface {
 public:
  AccessibleLine(LogLines& log, int fromEnd) : log_(&log), fromEnd_(fromEnd) {}

  bool isValid() const override { return log_ && index() >= 0; }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return log_ ? log_->window()->windowHandle() : nullptr; }
  QAccessibleInterface* parent() const override {
    return log_ ? QAccessible::queryAccessibleInterface(log_) : nullptr;
  }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

  QString text(QAccessible::Text which) const override {
    return isValid() && which == QAccessible::Name ? log_->lineText(index()) : QString();
  }
  void setText(QAccessible::Text /*which*/, const QString& /*text*/) override {}
  QRect rect() const override {
    if (!isValid()) return {};
    const QRect line = log_->lineRect(index());
    return {log_->mapToGlobal(line.topLeft()), line.size()};
  }
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.readOnly = true;
    state.invalid = !isValid();
    state.invisible = !isValid() || !log_->isVisible();
    state.offscreen = !isValid() || !log_->visibleRegion().intersects(log_->lineRect(index()));
    return state;
  }

  int index() const { return log_->lineCount() - 1 - fromEnd_; }

 private:
  QPointer<LogLines> log_;
  int fromEnd_;
};

class AccessibleLog final : public QAccessibleWidget {
 public:
  explicit AccessibleLog(LogLines& log) : QAccessibleWidget(&log, QAccessible::List), log_(log) {}
  AccessibleLog(const AccessibleLog&) = delete;
  AccessibleLog& operator=(const AccessibleLog&) = delete;
  ~AccessibleLog() override {
    for (const auto& [fromEnd, id] : lines_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return log_.lineCount(); }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= log_.lineCount()) return nullptr;
    const int fromEnd = log_.lineCount() - 1 - index;
    auto known = lines_.find(fromEnd);
    if (known == lines_.end()) {
      auto* line = new AccessibleLine(log_, fromEnd);
      // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): Qt's registry owns the line now
      const auto id = QAccessible::registerAccessibleInterface(line);
      known = lines_.emplace(fromEnd, id).first;
    }
    return QAccessible::accessibleInterface(known->second);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* line = dynamic_cast<const AccessibleLine*>(child);
    return line ? line->index() : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const QPoint at = log_.mapFromGlobal(QPoint(x, y));
    return log_.rect().contains(at) ? child(log_.lineAt(at.y())) : nullptr;
  }

 private:
  LogLines& log_;
  mutable std::map<int, QAccessible::Id> lines_;
};

QAccessibleInterface* makeAccessiblePanel(const QString& /*className*/, QObject* object) {
  if (auto* window = qobject_cast<QtPanelWindow*>(object)) {
    return new QAccessibleWidget(window, QAccessible::Dialog, window->accessibleName());
  }
  if (auto* heading = qobject_cast<HeadingLabel*>(object)) return new AccessibleHeading(*heading);
  if (auto* row = qobject_cast<RadioRow*>(object)) {
    return new AccessibleRow(*row, QAccessible::RadioButton);
  }
  if (auto* row = qobject_cast<CheckRow*>(object)) {
    return new AccessibleRow(*row, QAccessible::CheckBox);
  }
  if (auto* log = qobject_cast<LogLines*>(object)) return new AccessibleLog(*log);
  if (auto* column = qobject_cast<PanelColumn*>(object)) {
    return new QAccessibleWidget(column, QAccessible::Grouping);
  }
  return nullptr;
}

}  // namespace

void installAccessiblePanel() {
  QAccessible::installFactory(makeAccessiblePanel);
}

}  // namespace kestrow::qt
