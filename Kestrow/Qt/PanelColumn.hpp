// A box of the panel: its nodes' controls one under the other.
#pragma once

#include "Kestrow/PanelReuse.hpp"
#include "Kestrow/Qt/PanelItem.hpp"

#include <QWidget>

#include <vector>

namespace kestrow::qt {

class PanelColumn final : public QWidget, public PanelItem {
  Q_OBJECT

 public:
  // `padding` is kept free above and below the content.
  PanelColumn(PanelSurfaceClient& client, int padding, QWidget* parent);

  QWidget& widget() override { return *this; }
  // A node that was there before, by its kind and id, keeps its control.
  void apply(const PanelNode& node) override;
  int heightFor(int width) override;
  QMargins outset() const override;

  // Gives the controls their places; call it when content or width has changed.
  void arrange();

  // The controls in reading order, columns inside this one opened up.
  std::vector<PanelItem*> leaves() const;

  // Whether controls came or went since this was last asked, here or further down.
  bool takeStructureChanged();

 private:
  void rebuild(const std::vector<PanelNode>& nodes);
  void fixTabStops();

  PanelSurfaceClient& client_;
  int padding_;
  double spacing_ = 0;
  std::vector<PanelNodeKey> keys_;
  std::vector<PanelItem*> items_;  // one for each key; the widgets own them
  bool structureChanged_ = false;
};

}  // namespace kestrow::qt
