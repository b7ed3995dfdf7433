#include "Kestrow/PillWindow.hpp"

#include "KestrowCore/PillComposer.hpp"

#include <utility>
#include <vector>

namespace kestrow {

PillController::PillController(PillContent content, UserDefaults& defaults, Desktop& desktop)
    : defaults_(defaults), desktop_(desktop), view_(std::move(content), desktop) {
  view_.onClick = [this] {
    if (onOpenPanel) onOpenPanel();
  };
  screensChanged_ = desktop.onScreensChanged([this] { rebuild(false); });
  rebuild(false);
}

PillController::~PillController() {
  takeWindowAway();
}

void PillController::show(const PillContent& content, const TeamTheme& theme, PillEmphasis emphasis,
                          bool animate) {
  if (window_ && content == view_.content() && theme == view_.theme() &&
      emphasis == view_.emphasis()) {
    return;
  }
  const bool changesSize =
      (emphasis == PillEmphasis::expanded) != (view_.emphasis() == PillEmphasis::expanded);
  view_.setEmphasis(emphasis);
  view_.setTheme(theme);
  view_.setContent(content);
  rebuild(animate && changesSize);
}

void PillController::rebuild(bool animated) {
  std::vector<ScreenInfo> screens;
  for (auto& screen : desktop_.screens()) {
    screen.info.menuBarHeight = screen.info.frame.maxY() - screen.visibleFrame.maxY();
    screens.push_back(screen.info);
  }
  const auto screen = ScreenGeometry::target(screens);
  if (!screen || defaults_.boolean(DefaultsKey::pillHidden)) {
    takeWindowAway();
    return;
  }

  const bool expanded = view_.emphasis() == PillEmphasis::expanded;
  const auto contentWidth = [&](PillComposer::Part part) {
    return PillComposer::contentWidth(view_.content(), part, expanded, view_.measure());
  };
  auto layout = ScreenGeometry::layout(*screen, contentWidth(PillComposer::Part::leftWing),
                                       contentWidth(PillComposer::Part::rightWing),
                                       contentWidth(PillComposer::Part::drawn));
  if (expanded) layout = grownDown(layout, expandedGrowth);
  const Rect frame = layout.bounds();

  const bool existed = window_ != nullptr;
  if (!existed) {
    window_ = desktop_.makePillSurface(view_);
    view_.setSurface(window_.get());
  }
  window_->setSharing(defaults_.boolean(DefaultsKey::showInScreenShares));
  view_.setLayout(layout.map([&](Rect rect) { return rect.translated(-frame.x, -frame.y); }));
  window_->setFrame(frame, animated && existed ? frameChange : Seconds::zero());
  window_->orderFront();
}

void PillController::setSharing(bool readable) {
  if (window_) window_->setSharing(readable);
}

PillLayout PillController::grownDown(const PillLayout& layout, double amount) {
  return layout.map([amount](Rect rect) {
    return Rect{rect.x, rect.y - amount, rect.width, rect.height + amount};
  });
}

std::optional<Rect> PillController::windowFrame() const {
  if (!window_) return std::nullopt;
  return window_->frame();
}

void PillController::takeWindowAway() {
  view_.setSurface(nullptr);
  window_.reset();
}

}  // namespace kestrow
