// A thin scroll bar that lies over the content and keeps clear of the panel's round corners.
#pragma once

#include <QScrollBar>

namespace kestrow::qt {

// Moves, and follows, the bar of a scroll area that shows none itself. Hidden while there is
// nothing to scroll.
class PanelScrollBar final : public QScrollBar {
  Q_OBJECT

 public:
  static constexpr int thickness = 10;

  PanelScrollBar(QScrollBar& followed, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrow::qt
