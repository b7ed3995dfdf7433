// The panel's controls. Each paints itself, so that they look the same whatever style the desktop
// gives Qt programs, and leaves behaviour and accessibility to the widget it derives from.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QString>

#include "Kestrow/Qt/PanelItem.hpp"

namespace kestrow::qt {

// A text that wraps, also inside words.
class WrapLabel : public QLabel, public PanelItem {
  Q_OBJECT

 public:
  WrapLabel(const QFont& font, const QColor& color, QWidget* parent);

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showText(const std::string& text);

 private:
  int heightWidth_ = -1;  // the width that height_ is for
  int height_ = 0;
};

// A label that assistive technology offers as a heading.
class HeadingLabel final : public WrapLabel {
  Q_OBJECT

 public:
  using WrapLabel::WrapLabel;
  void apply(const PanelNode& node) override;
};

// The texts of a row with a mark: a title in one line, a word after it, a wrapping line under it.
struct RowText {
  QString title;
  QString status;
  QString detail;
  bool operator==(const RowText&) const = default;

  int heightFor(int width) const;  // of the whole row's content
  // In the room right of the mark's column.
  void draw(QPainter& painter, const QRect& content, bool isEnabled) const;
};

class RadioRow final : public QRadioButton, public PanelItem {
  Q_OBJECT

 public:
  RadioRow(PanelSurfaceClient& client, QWidget* parent);

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;
  QMargins outset() const override;
  QWidget* focusTarget() override { return this; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }

 private:
  std::string id_;
  RowText text_;
  int heightWidth_ = -1;  // the width that height_ is for
  int height_ = 0;
};

class CheckRow final : public QCheckBox, public PanelItem {
  Q_OBJECT

 public:
  CheckRow(PanelSurfaceClient& client, QWidget* parent);

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;
  QMargins outset() const override;
  QWidget* focusTarget() override { return this; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }

 private:
  std::string id_;
  RowText text_;
};

class PushButton final : public QPushButton, public PanelItem {
  Q_OBJECT

 public:
  PushButton(PanelSurfaceClient& client, QWidget* parent);

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;
  int widthFor(int available) override;
  QWidget* focusTarget() override { return this; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string id_;
};

class SeparatorLine final : public QWidget, public PanelItem {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  QWidget& widget() override { return *this; }
  void apply(const PanelNode& /*node*/) override {}
  int heightFor(int /*width*/) override { return 1; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrow::qt
