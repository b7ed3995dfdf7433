#include "Kestrow/AppKit/PanelItem.hpp"

#include <variant>

#include "Kestrow/AppKit/PanelColumn.hpp"
#include "Kestrow/AppKit/PanelControls.hpp"
#include "Kestrow/AppKit/PanelTexts.hpp"

namespace kestrow::appkit {

namespace {

struct Maker {
  PanelSurfaceClient& client;

  using Made = std::unique_ptr<PanelItem>;

  Made operator()(const PanelHeader& /*kind*/) const { return std::make_unique<HeaderItem>(); }
  Made operator()(const PanelSectionTitle& /*kind*/) const {
    return std::make_unique<SectionTitleItem>();
  }
  Made operator()(const PanelLabel& /*kind*/) const { return std::make_unique<LabelItem>(); }
  Made operator()(const PanelLines& /*kind*/) const { return std::make_unique<LinesItem>(); }
  Made operator()(const PanelRadioButton& /*kind*/) const {
    return std::make_unique<RadioItem>(client);
  }
  Made operator()(const PanelPopUp& /*kind*/) const { return std::make_unique<PopUpItem>(client); }
  Made operator()(const PanelCheckBox& /*kind*/) const {
    return std::make_unique<CheckBoxItem>(client);
  }
  Made operator()(const PanelButton& /*kind*/) const {
    return std::make_unique<ButtonItem>(client);
  }
  Made operator()(const PanelSeparator& /*kind*/) const {
    return std::make_unique<SeparatorItem>();
  }
  Made operator()(const PanelBox& /*kind*/) const { return std::make_unique<PanelColumn>(client); }
};

}  // namespace

std::unique_ptr<PanelItem> makePanelItem(const PanelNode& node, PanelSurfaceClient& client) {
  return std::visit(Maker{client}, node.kind);
}

}  // namespace kestrow::appkit
