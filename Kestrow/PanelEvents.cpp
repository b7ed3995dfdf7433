// What the panel's surface reports, as the panel's actions.
#include "Kestrow/PanelNodes.hpp"
#include "Kestrow/PanelView.hpp"

#include <string>

namespace kestrow {

void PanelController::radioButtonPicked(const std::string& id) {
  if (const auto match = panel_nodes::matchOf(id)) pickMatch(*match);
}

void PanelController::popUpChanged(const std::string& id, int selected) {
  if (id == PanelId::theme) {
    shown_.theme = selected;
  } else if (id == PanelId::alertStyle) {
    shown_.alertStyle = selected;
  } else {
    return;
  }
  customisationChanged();
}

void PanelController::checkBoxToggled(const std::string& id, bool isOn) {
  if (id == PanelId::share) {
    shareToggled(isOn);
  } else if (id == PanelId::hide) {
    hideToggled(isOn);
  } else if (id == PanelId::login) {
    loginToggled(isOn);
  }
}

void PanelController::buttonPressed(const std::string& id) {
  if (id == PanelId::retry) {
    retryPicker();
  } else if (id == PanelId::loginItems) {
    openLoginItems();
  } else if (id == PanelId::quit) {
    desktop_.quit();
  }
}

void PanelController::clickedOutside() {
  close();
}

bool PanelController::escapePressed() {
  if (!surface_ || !surface_->isKey()) return false;
  close();
  return true;
}

void PanelController::resignedKey() {
  windowDidResignKey();
}

}  // namespace kestrow
