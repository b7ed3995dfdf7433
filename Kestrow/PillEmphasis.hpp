// How an alert stands out in the pill.
#pragma once

namespace kestrow {

enum class PillEmphasis {
  none,
  flash,     // the score lights up in place
  expanded,  // the alert takes the pill over, in two rows, and the pill grows downwards
};

}  // namespace kestrow
