// Keeps the pill's window on the screen: where it is, how large, and whether it is there at all.
#pragma once

#include "Kestrow/PillEmphasis.hpp"
#include "Kestrow/PillView.hpp"
#include "Kestrow/Platform/Desktop.hpp"
#include "Kestrow/Platform/PillSurface.hpp"
#include "Kestrow/Platform/UserDefaults.hpp"
#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/ScreenGeometry.hpp"

#include <functional>
#include <memory>
#include <optional>

namespace kestrow {

// Main thread only. The defaults and the desktop outlive it.
class PillController {
 public:
  static constexpr double expandedGrowth = 16;  // points downwards
  static constexpr Seconds frameChange{0.2};

  // Puts the pill on the screen unless it is hidden.
  PillController(PillContent content, UserDefaults& defaults, Desktop& desktop);
  PillController(const PillController&) = delete;
  PillController& operator=(const PillController&) = delete;
  ~PillController();

  // What a click on the pill does; may be empty.
  std::function<void()> onOpenPanel;

  // Shows the content; nothing happens when it is shown already. `animate` allows the window to
  // glide when an alert expands or ends.
  void show(const PillContent& content, const TeamTheme& theme, PillEmphasis emphasis,
            bool animate);

  // Places the window anew by the screens, the switches and the content; without a screen or with
  // the pill hidden, takes it away.
  void rebuild(bool animated);

  // Whether screen captures may show the pill; nothing happens while there is no window.
  void setSharing(bool readable);

  // Each rectangle longer by `amount` downwards, its top edge kept.
  static PillLayout grownDown(const PillLayout& layout, double amount);

  const PillView& view() const { return view_; }
  // Where the window is, in screen coordinates; nothing while there is none.
  std::optional<Rect> windowFrame() const;

 private:
  void takeWindowAway();

  UserDefaults& defaults_;
  Desktop& desktop_;
  PillView view_;
  std::unique_ptr<PillSurface> window_;  // goes before the view that it shows
  Subscription screensChanged_;
};

}  // namespace kestrow
