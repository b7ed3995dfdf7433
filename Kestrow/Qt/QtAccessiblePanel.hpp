// The panel for assistive technology, where Qt's own elements would say too little: the window is a
// dialog, titles are headings, boxes are named groups, and the log is a list of its lines.
#pragma once

namespace kestrow::qt {

// Makes the accessibility elements of panel windows; once, before the first one.
void installAccessiblePanel();

}  // namespace kestrow::qt
