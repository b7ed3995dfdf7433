// The panel's rows with a mark: the matches' radio buttons and the preferences' check boxes.
#pragma once

#include "Kestrow/Qt/PanelItem.hpp"

#include <QCheckBox>
#include <QKeyEvent>
#include <QMargins>
#include <QPainter>
#include <QRadioButton>
#include <QRectF>
#include <QString>

#include <string>

namespace kestrow::qt {

// The texts of a row: a title in one line, a word after it, a wrapping line under it.
struct RowText {
  QString title;
  QString status;
  QString detail;
  bool operator==(const RowText&) const = default;

  int heightFor(int width) const;  // of the whole row's content
  // In the room right of the mark's column.
  void draw(QPainter& painter, const QRect& content, bool isEnabled) const;
};

// A button that takes clicks on its whole width. `Button` is the Qt widget that gives it its
// behaviour.
template <class Button>
class MarkRow : public Button, public PanelItem {
 public:
  QWidget& widget() override { return *this; }
  int heightFor(int width) override;
  QMargins outset() const override;
  QWidget* focusTarget() override { return this; }

 protected:
  using DrawMark = void (*)(QPainter& painter, const QRectF& rect, bool isOn, bool hovered);

  MarkRow(DrawMark drawMark, QWidget* parent);

  // The description is what assistive technology says after the title.
  void showTexts(RowText text, const QString& description, bool isOn);
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override { return this->rect().contains(position); }

 private:
  DrawMark drawMark_;
  RowText text_;
  int heightWidth_ = -1;  // the width that height_ is for
  int height_ = 0;
};

class RadioRow final : public MarkRow<QRadioButton> {
  Q_OBJECT

 public:
  RadioRow(PanelSurfaceClient& client, QWidget* parent);
  void apply(const PanelNode& node) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::string id_;
};

class CheckRow final : public MarkRow<QCheckBox> {
  Q_OBJECT

 public:
  CheckRow(PanelSurfaceClient& client, QWidget* parent);
  void apply(const PanelNode& node) override;

 private:
  std::string id_;
};

}  // namespace kestrow::qt
