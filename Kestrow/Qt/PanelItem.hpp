// One node of the panel as a control.
#pragma once

#include "Kestrow/Platform/PanelSurface.hpp"

#include <QMargins>
#include <QWidget>

namespace kestrow::qt {

// Mixed into a widget, which its parent owns.
class PanelItem {
 public:
  virtual ~PanelItem() = default;
  virtual QWidget& widget() = 0;

  // Shows the node, which is of the kind that the item was made for; also takes back what the user
  // changed in the control when the node says otherwise.
  virtual void apply(const PanelNode& node) = 0;

  // The height for content of this width.
  virtual int heightFor(int width) = 0;
  // The width to take of what there is.
  virtual int widthFor(int available) { return available; }
  // How far the widget reaches beyond its content, for a highlight.
  virtual QMargins outset() const { return {}; }
  // What takes the keyboard in it, if anything.
  virtual QWidget* focusTarget() { return nullptr; }
};

// The control for the node, not yet applied.
PanelItem* makePanelItem(const PanelNode& node, PanelSurfaceClient& client, QWidget* parent);

}  // namespace kestrow::qt
