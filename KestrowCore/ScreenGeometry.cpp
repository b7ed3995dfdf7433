#include "KestrowCore/ScreenGeometry.hpp"

#include <algorithm>
#include <cmath>

namespace kestrow {
namespace {

double pillWidth(double textWidth) {
  return std::ceil(textWidth) + 2 * ScreenGeometry::padding;
}

double wingWidth(const Rect& area, double textWidth) {
  return std::min({area.width, pillWidth(textWidth), ScreenGeometry::maxWingWidth});
}

}  // namespace

Rect PillLayout::bounds() const {
  if (const auto* notch = std::get_if<Notch>(&form)) return notch->left.united(notch->right);
  return std::get<Drawn>(form).rect;
}

PillLayout PillLayout::map(const std::function<Rect(Rect)>& transform) const {
  if (const auto* notch = std::get_if<Notch>(&form)) {
    return {Notch{transform(notch->left), transform(notch->right), transform(notch->notch)}};
  }
  return {Drawn{transform(std::get<Drawn>(form).rect)}};
}

std::optional<ScreenInfo> ScreenGeometry::target(std::span<const ScreenInfo> screens) {
  if (screens.empty()) return std::nullopt;
  return screens.front();
}

std::optional<Rect> ScreenGeometry::notchRect(const ScreenInfo& screen) {
  if (!screen.auxiliaryTopLeftArea || !screen.auxiliaryTopRightArea) return std::nullopt;
  const double left = screen.frame.minX() + screen.auxiliaryTopLeftArea->width;
  const double right = screen.frame.maxX() - screen.auxiliaryTopRightArea->width;
  if (!(left < right)) return std::nullopt;
  const double height = screen.safeAreaTop > 0 ? screen.safeAreaTop
                                               : std::max(screen.auxiliaryTopLeftArea->height,
                                                          screen.auxiliaryTopRightArea->height);
  return Rect{left, screen.frame.maxY() - height, right - left, height};
}

PillLayout ScreenGeometry::layout(const ScreenInfo& screen, double leftTextWidth,
                                  double rightTextWidth, double drawnTextWidth) {
  if (const std::optional<Rect> notch = notchRect(screen)) {
    const double left = wingWidth(*screen.auxiliaryTopLeftArea, leftTextWidth);
    const double right = wingWidth(*screen.auxiliaryTopRightArea, rightTextWidth);
    return {PillLayout::Notch{{notch->minX() - left, notch->minY(), left, notch->height},
                              {notch->maxX(), notch->minY(), right, notch->height},
                              *notch}};
  }
  const double height = screen.menuBarHeight > 0 ? screen.menuBarHeight : fallbackHeight;
  const double width = std::min(screen.frame.width, pillWidth(drawnTextWidth));
  return {PillLayout::Drawn{
      {screen.frame.midX() - width * 0.5, screen.frame.maxY() - height, width, height}}};
}

double ScreenGeometry::textWidth(double pillWidth) {
  return std::max(pillWidth - 2 * padding, 0.0);
}

}  // namespace kestrow
