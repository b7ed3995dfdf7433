#include "Kestrow/PanelView.hpp"

#include "Kestrow/PanelMeasure.hpp"
#include "KestrowCore/Customisation.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kestrow {

namespace {

// The part of the desktop that is taken for free when no screen is attached.
constexpr Rect withoutScreen{0, 0, 1440, 900};

double sharedArea(const Rect& a, const Rect& b) {
  const double wide = std::min(a.maxX(), b.maxX()) - std::max(a.minX(), b.minX());
  const double high = std::min(a.maxY(), b.maxY()) - std::max(a.minY(), b.minY());
  return wide > 0 && high > 0 ? wide * high : 0;
}

// The screen that holds most of the pill; null when none holds any of it.
const Screen* screenOf(const Rect& pill, std::span<const Screen> screens) {
  const Screen* found = nullptr;
  double most = 0;
  for (const auto& screen : screens) {
    const double area = sharedArea(screen.info.frame, pill);
    if (area <= most) continue;
    most = area;
    found = &screen;
  }
  return found;
}

// What is free on the panel's screen.
Rect visibleFrame(std::span<const Screen> screens, const std::optional<Screen>& mainScreen,
                  const std::optional<Rect>& pill) {
  const Screen* pillScreen = pill ? screenOf(*pill, screens) : nullptr;
  if (pillScreen) return pillScreen->visibleFrame;
  if (mainScreen) return mainScreen->visibleFrame;
  return screens.empty() ? withoutScreen : screens.front().visibleFrame;
}

int indexOfTheme(const std::string& teamId) {
  const auto palette = TeamTheme::palette();
  const auto found = std::ranges::find(palette, teamId, &TeamTheme::teamId);
  return found == palette.end() ? 0 : static_cast<int>(found - palette.begin());
}

int indexOfAlertStyle(AlertStyle style) {
  const auto* found = std::ranges::find(allAlertStyles, style);
  return found == allAlertStyles.end() ? 0 : static_cast<int>(found - allAlertStyles.begin());
}

// The entry at the index; the first when nothing is chosen.
const auto& chosen(const auto& entries, int index) {
  return entries[static_cast<std::size_t>(std::max(index, 0))];
}

}  // namespace

PanelController::PanelController(LocalStore& store, Poller& poller, ProPoller& pro,
                                 PillController& pill, MatchPicker& picker, LoginItem& loginItem,
                                 std::function<void()> renderPill, UserDefaults& defaults,
                                 Desktop& desktop)
    : store_(store),
      poller_(poller),
      pro_(pro),
      pill_(pill),
      picker_(picker),
      loginItem_(loginItem),
      renderPill_(std::move(renderPill)),
      defaults_(defaults),
      desktop_(desktop) {
  picker_.onChange = [this](const PickerState&) { refreshPicker(); };
  // The pill has subscribed before, so it is in its new place by then.
  screensChanged_ = desktop_.onScreensChanged([this] {
    if (isVisible()) position();
  });
}

PanelController::~PanelController() {
  picker_.onChange = nullptr;
}

void PanelController::show() {
  picker_.followedId = poller_.state().followedMatchId;
  refresh();
  refreshPicker();
  picker_.startLoad();
  if (!surface_) surface_ = desktop_.makePanelSurface(*this);
  update();
  position();
  if (!surface_->isVisible()) surface_->scrollToTop();
  surface_->showAndMakeKey();
  surface_->installMonitors();
}

void PanelController::close() {
  if (!isVisible()) return;
  surface_->orderOut();
  surface_->removeMonitors();
}

void PanelController::toggle() {
  if (isVisible()) {
    close();
  } else {
    show();
  }
}

bool PanelController::isVisible() const {
  return surface_ && surface_->isVisible();
}

void PanelController::refresh() {
  shown_.log = panel_nodes::log(pro_.log());
  const auto customisation = store_.customisation();
  shown_.theme = indexOfTheme(customisation.themeTeamId);
  shown_.alertStyle = indexOfAlertStyle(customisation.alertStyle);
  shown_.share = defaults_.boolean(DefaultsKey::showInScreenShares);
  shown_.hide = defaults_.boolean(DefaultsKey::pillHidden);
  shown_.login = loginItem_.status();
  update();
}

void PanelController::refreshPicker() {
  shown_.matches = panel_nodes::matches(picker_.state(), poller_.state().followedMatchId);
  update();
}

void PanelController::update() {
  if (!surface_) return;
  surface_->setContent(panel_nodes::tree(shown_, desktop_.canExcludeFromCaptures()));
  if (surface_->isVisible()) position();
}

void PanelController::position() {
  const auto screens = desktop_.screens();
  surface_->setFrame(
      frameFor(screens, desktop_.mainScreen(), pill_.windowFrame(), surface_->fittingHeight()));
}

Rect PanelController::frameFor(std::span<const Screen> screens,
                               const std::optional<Screen>& mainScreen,
                               const std::optional<Rect>& pill, double fittingHeight) {
  const Rect visible = visibleFrame(screens, mainScreen, pill);
  const Rect anchor = pill.value_or(visible);
  constexpr double width = PanelMeasure::width;
  const double top = (pill ? pill->minY() : visible.maxY()) - gap;
  const double height = std::max(0.0, std::min(fittingHeight, top - visible.minY() - margin));
  const double x = std::max(visible.minX() + margin,
                            std::min(visible.maxX() - width - margin, anchor.midX() - width / 2));
  return {x, top - height, width, height};
}

void PanelController::pickMatch(const std::string& id) {
  if (id.empty()) {
    update();  // takes the control's mark back
    return;
  }
  picker_.followedId = id;
  poller_.follow(id);
  refreshPicker();
  refresh();
}

void PanelController::retryPicker() {
  picker_.startLoad();
}

void PanelController::customisationChanged() {
  const auto& theme = chosen(TeamTheme::palette(), shown_.theme);
  const auto& style = chosen(allAlertStyles, shown_.alertStyle);
  // A choice that can't be saved shows until the next refresh tells what the file holds.
  static_cast<void>(store_.setCustomisation({std::string(theme.teamId), style}));
  renderPill_();
}

void PanelController::shareToggled(bool isOn) {
  shown_.share = isOn;
  defaults_.setBoolean(DefaultsKey::showInScreenShares, isOn);
  pill_.setSharing(isOn);
}

void PanelController::hideToggled(bool isOn) {
  shown_.hide = isOn;
  defaults_.setBoolean(DefaultsKey::pillHidden, isOn);
  pill_.rebuild(false);
  if (!defaults_.boolean(DefaultsKey::pillHidden)) renderPill_();
}

void PanelController::loginToggled(bool isOn) {
  showLoginStatus(loginItem_.setEnabled(isOn));
}

void PanelController::openLoginItems() {
  loginItem_.openLoginItemsSettings();
}

void PanelController::showLoginStatus(LoginItemStatus status) {
  shown_.login = status;
  update();
}

void PanelController::windowDidResignKey() {
  close();
}

}  // namespace kestrow
