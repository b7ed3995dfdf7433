// The pill for assistive technology: one button with a label and a press action.
#pragma once

namespace kestrow::qt {

// Makes the accessibility elements of pill windows; once, before the first one.
void installAccessiblePill();

}  // namespace kestrow::qt
