#include "Kestrow/Qt/PanelColumn.hpp"

#include "Kestrow/Qt/PanelControls.hpp"
#include "Kestrow/Qt/PanelLog.hpp"
#include "Kestrow/Qt/PanelLook.hpp"
#include "Kestrow/Qt/PanelPopUpRow.hpp"
#include "Kestrow/Qt/PanelRows.hpp"
#include "Kestrow/Qt/WrappedText.hpp"

#include <QAbstractButton>

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

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
    return new HeadingLabel(look::font(look::sectionTitleSize, FontWeight::bold), look::primaryText,
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
  if (const auto name = QString::fromStdString(box.name); name != accessibleName())
    setAccessibleName(name);
  if (keysOf(box.nodes) != keys_) rebuild(box.nodes);
  for (std::size_t i = 0; i < items_.size(); ++i) items_[i]->apply(box.nodes[i]);
  fixTabStops();
}

// Tab stops once at a group of radio buttons, however many there are: at the one that is on, or at
// the first. Arrow keys move inside the group.
void PanelColumn::fixTabStops() {
  RadioRow* stop = nullptr;
  for (auto* item : items_) {
    auto* radio = qobject_cast<RadioRow*>(&item->widget());
    if (radio && (!stop || (radio->isChecked() && !stop->isChecked()))) stop = radio;
  }
  for (auto* item : items_) {
    auto* radio = qobject_cast<RadioRow*>(&item->widget());
    if (radio) radio->setFocusPolicy(radio == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

void PanelColumn::rebuild(const std::vector<PanelNode>& nodes) {
  auto before = std::exchange(items_, {});
  auto keys = keysOf(nodes);
  for (const auto place : reusedPlaces(keys_, keys)) {
    auto* item = place ? std::exchange(before[*place], nullptr)
                       : makePanelItem(nodes[items_.size()], client_, this);
    items_.push_back(item);
    if (!place) item->widget().show();
    item->widget().raise();  // the order that assistive technology walks
  }
  keys_ = std::move(keys);
  for (auto* item : before) {
    if (item) retire(item->widget());
  }
  structureChanged_ = true;
}

int PanelColumn::heightFor(int width) {
  double height = 0;
  for (auto* item : items_) height += item->heightFor(width) + spacing_;
  return items_.empty() ? 0 : static_cast<int>(std::ceil(height - spacing_));
}

QMargins PanelColumn::outset() const {
  return {look::inset, padding_, look::inset, padding_};
}

void PanelColumn::arrange() {
  const int width = this->width() - 2 * look::inset;
  double y = padding_;
  for (auto* item : items_) {
    const QRect content(look::inset, static_cast<int>(y), item->widthFor(width),
                        item->heightFor(width));
    item->widget().setGeometry(content.marginsAdded(item->outset()));
    if (auto* column = dynamic_cast<PanelColumn*>(item)) column->arrange();
    y += content.height() + spacing_;
  }
}

std::vector<PanelItem*> PanelColumn::leaves() const {
  std::vector<PanelItem*> result;
  for (auto* item : items_) {
    if (const auto* column = dynamic_cast<PanelColumn*>(item)) {
      std::ranges::copy(column->leaves(), std::back_inserter(result));
    } else {
      result.push_back(item);
    }
  }
  return result;
}

bool PanelColumn::takeStructureChanged() {
  bool changed = std::exchange(structureChanged_, false);
  for (auto* item : items_) {
    if (auto* column = dynamic_cast<PanelColumn*>(item)) {
      changed = column->takeStructureChanged() || changed;
    }
  }
  return changed;
}

}  // namespace kestrow::qt
