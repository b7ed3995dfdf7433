// The panel's window under Qt: a rounded, dark sheet with the controls in a scroll area.
#pragma once

#include "Kestrow/Platform/PanelSurface.hpp"
#include "Kestrow/Qt/OutsideClicks.hpp"
#include "Kestrow/Qt/PanelColumn.hpp"
#include "Kestrow/Qt/PanelScrollBar.hpp"
#include "Kestrow/Qt/X11Window.hpp"

#include <QPointer>
#include <QScrollArea>
#include <QWidget>

#include <memory>
#include <optional>

namespace kestrow::qt {

// Not on the screen until it is shown. The client outlives it.
class QtPanelWindow final : public QWidget, public PanelSurface {
  Q_OBJECT

 public:
  explicit QtPanelWindow(PanelSurfaceClient& client);
  ~QtPanelWindow() override;

  void setContent(const PanelNode& root) override;
  double fittingHeight() override;
  void setFrame(const Rect& frame) override;
  bool isVisible() const override { return QWidget::isVisible(); }
  bool isKey() const override { return isActiveWindow(); }
  void scrollToTop() override;
  void showAndMakeKey() override;
  void orderOut() override;
  void installMonitors() override;
  void removeMonitors() override;

  QScrollArea& scrollArea() { return scroll_; }

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  // What is at the top of the part in sight, so that it can stay there.
  struct Place {
    PanelItem* item = nullptr;
    int lineFromEnd = -1;  // in a log
    int offset = 0;        // from its top to the top of what is in sight
  };

  std::optional<Place> place() const;
  void restore(const Place& place);
  int topOf(const Place& place) const;
  void arrange();
  void fixTabOrder();
  void applyShape();
  bool performKeyEquivalent(const QKeyEvent& event);
  bool scrollByKey(int key);

  PanelSurfaceClient& client_;
  QScrollArea scroll_;
  PanelColumn* column_;
  PanelScrollBar bar_;
  std::unique_ptr<X11Window> x11_;
  QPointer<OutsideClicks> outsideClicks_;
  bool watchesKeys_ = false;
};

}  // namespace kestrow::qt
