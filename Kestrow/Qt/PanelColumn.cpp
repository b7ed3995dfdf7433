#include "Kestrow/Qt/PanelColumn.hpp"

#include <QAbstractButton>
#include <algorithm>
#include <cmath>
#include <map>
#include <ranges>
#include <utility>
#include <variant>

#include "Kestrow/Qt/PanelControls.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/PanelPopUpRow.hpp"
#include "Kestrow/Qt/PanelRows.hpp"
#include "Kestrow/Qt/WrappedText.hpp"

namespace kestrow::qt {

namespace look = panel_look;

namespace {

struct Maker {
  PanelSurfaceClient& client;
  QWidget* parent;

  PanelItem* operator()(const PanelHeader& /*kind*/) const {
    return new HeadingLabel(look::font(look::regularSize, FontWeight::bold), look::primaryText,
                            parent);
  }
  PanelItem* operator()(const PanelSectionTitle& /*kind*/) const {
    return new HeadingLabel(look::font(look::smallSize + 1, FontWeight::bold), look::primaryText,
                            parent);
  }
  PanelItem* operator()(const PanelLabel& /*kind*/) const {
    return new WrapLabel(look::font(look::smallSize), look::secondaryText, parent);
  }
  PanelItem* operator()(const PanelLines& /*kind*/) const { return new LogLines(parent); }
  PanelItem* operator()(const PanelRadioButton& /*kind*/) const {
    return new RadioRow(client, parent);
  }
  PanelItem* operator()(const PanelPopUp& /*kind*/) const { return new PopUpRow(client, parent); }
  PanelItem* operator()(const PanelCheckBox& /*kind*/) const {
    return new CheckRow(client, parent);
  }
  PanelItem* operator()(const PanelButton& /*kind*/) const {
    return new PushButton(client, parent);
  }
  PanelItem* operator()(const PanelSeparator& /*kind*/) const { return new SeparatorLine(parent); }
  PanelItem* operator()(const PanelBox& /*kind*/) const {
    return new PanelColumn(client, look::rowOutsetY, parent);
  }
};

// The control may be the one whose signal is being handled, so it goes later. The keyboard goes to
// the window rather than to whatever comes next.
void retire(QWidget& widget) {
  const QWidget* focus = widget.window()->focusWidget();
  if (focus && (focus == &widget || widget.isAncestorOf(focus))) widget.window()->setFocus();
  if (auto* button = qobject_cast<QAbstractButton*>(&widget)) button->setAutoExclusive(false);
  widget.hide();
  widget.deleteLater();
}

}  // namespace

PanelItem* makePanelItem(const PanelNode& node, PanelSurfaceClient& client, QWidget* parent) {
  return std::visit(Maker{client, parent}, node.kind);
}

PanelColumn::PanelColumn(PanelSurfaceClient& client, int padding, QWidget* parent)
    : QWidget(parent), client_(client), padding_(padding) {}

void PanelColumn::apply(const PanelNode& node) {
  const auto& box = std::get<PanelBox>(node.kind);
  spacing_ = box.spacing;
  if (const auto name = oneLine(box.name); name != accessibleName()) setAccessibleName(name);
  if (!holdsExactly(box.nodes)) rebuild(box.nodes);
  for (std::size_t i = 0; i < children_.size(); ++i) children_[i].item->apply(box.nodes[i]);
  fixTabStops();
}

// Tab stops once at a group of radio buttons, however many there are: at the one that is on, or at
// the first. Arrow keys move inside the group.
void PanelColumn::fixTabStops() {
  RadioRow* stop = nullptr;
  for (const auto& child : children_) {
    auto* radio = qobject_cast<RadioRow*>(&child.item->widget());
    if (radio && (!stop || (radio->isChecked() && !stop->isChecked()))) stop = radio;
  }
  for (const auto& child : children_) {
    auto* radio = qobject_cast<RadioRow*>(&child.item->widget());
    if (radio) radio->setFocusPolicy(radio == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

bool PanelColumn::holdsExactly(const std::vector<PanelNode>& nodes) const {
  return std::ranges::equal(children_, nodes, [](const Child& child, const PanelNode& node) {
    return child.kind == node.kind.index() && child.id == node.id;
  });
}

void PanelColumn::rebuild(const std::vector<PanelNode>& nodes) {
  std::multimap<std::pair<std::size_t, std::string>, Child> before;
  for (auto& child : children_) before.emplace(std::pair(child.kind, child.id), child);
  children_.clear();
  for (const auto& node : nodes) {
    const auto found = before.find({node.kind.index(), node.id});
    if (found != before.end()) {
      children_.push_back(found->second);
      before.erase(found);
    } else {
      auto* item = makePanelItem(node, client_, this);
      children_.push_back({.kind = node.kind.index(), .id = node.id, .item = item});
      item->widget().show();
    }
    children_.back().item->widget().raise();  // the order that assistive technology walks
  }
  for (auto& [key, child] : before) retire(child.item->widget());
  structureChanged_ = true;
}

int PanelColumn::heightFor(int width) {
  double height = 0;
  for (const auto& child : children_) height += child.item->heightFor(width) + spacing_;
  return children_.empty() ? 0 : static_cast<int>(std::ceil(height - spacing_));
}

QMargins PanelColumn::outset() const {
  return {look::inset, padding_, look::inset, padding_};
}

void PanelColumn::arrange() {
  const int width = this->width() - 2 * look::inset;
  double y = padding_;
  for (const auto& child : children_) {
    auto& item = *child.item;
    const QRect content(look::inset, static_cast<int>(y), item.widthFor(width),
                        item.heightFor(width));
    item.widget().setGeometry(content.marginsAdded(item.outset()));
    if (auto* column = dynamic_cast<PanelColumn*>(&item)) column->arrange();
    y += content.height() + spacing_;
  }
}

std::vector<PanelItem*> PanelColumn::leaves() const {
  std::vector<PanelItem*> result;
  for (const auto& child : children_) {
    if (const auto* column = dynamic_cast<PanelColumn*>(child.item)) {
      std::ranges::copy(column->leaves(), std::back_inserter(result));
    } else {
      result.push_back(child.item);
    }
  }
  return result;
}

bool PanelColumn::takeStructureChanged() {
  bool changed = std::exchange(structureChanged_, false);
  for (const auto& child : children_) {
    if (auto* column = dynamic_cast<PanelColumn*>(child.item)) {
      changed = column->takeStructureChanged() || changed;
    }
  }
  return changed;
}

}  // namespace kestrow::qt
