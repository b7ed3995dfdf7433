// A labelled pop-up button with its list.
#pragma once

#include "Kestrow/Qt/PanelItem.hpp"

#include <QComboBox>
#include <QLabel>
#include <QStyledItemDelegate>

namespace kestrow::qt {

// The button. Leaves the mouse wheel to the panel: a choice must not change because the pointer
// crosses it while the panel scrolls.
class PopUpButton final : public QComboBox {
  Q_OBJECT

 public:
  explicit PopUpButton(QWidget* parent);

  void showPopup() override;
  void hidePopup() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

// One choice of the list, with a tick when it is the current one.
class PopUpDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit PopUpDelegate(QComboBox& button) : QStyledItemDelegate(&button), button_(button) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  QComboBox& button_;
};

class PopUpRow final : public QWidget, public PanelItem {
  Q_OBJECT

 public:
  PopUpRow(PanelSurfaceClient& client, QWidget* parent);

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;
  QWidget* focusTarget() override { return button_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  std::string id_;
  QLabel* label_;
  PopUpButton* button_;
};

}  // namespace kestrow::qt
