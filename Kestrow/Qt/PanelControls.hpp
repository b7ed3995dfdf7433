// The panel's plain controls. Like its rows, its log and its pop-ups, each paints itself, so that
// they look the same whatever style the desktop gives Qt programs, and leaves behaviour and
// accessibility to the widget it derives from.
#pragma once

#include "Kestrow/Qt/PanelItem.hpp"

#include <QLabel>
#include <QPushButton>
#include <QString>

#include <string>

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
