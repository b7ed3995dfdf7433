// An alert's form on the screen and in speech.
#pragma once

#include "Kestrow/PillEmphasis.hpp"
#include "Kestrow/Platform/Desktop.hpp"
#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/PillContent.hpp"

#include <string>
#include <string_view>
#include <utility>

namespace kestrow {

struct BoomPresentation {
  struct Text {
    std::string label;  // what happened
    std::string who;    // the batter and the side, or the side alone
    bool operator==(const Text&) const = default;
  };

  static Text text(const BoomEvent& event);

  // What the pill shows while the alert is on: in the big style the alert in place of `over`, in
  // the subtle style `over` itself, lit up.
  static std::pair<PillContent, PillEmphasis> present(const BoomEvent& event, AlertStyle style,
                                                      const PillContent& over);

  // Speaks the text through assistive technology, before anything that waits to be read.
  static void announce(Desktop& desktop, std::string_view text);
};

}  // namespace kestrow
