#include "Kestrow/AppKit/FloatingPanel.hpp"

#include "Kestrow/AppKit/Strings.hpp"
#include "KestrowCore/Identity.hpp"

namespace kestrow::appkit {

void makeFloating(NSPanel* panel, NSWindowCollectionBehavior behavior) {
  panel.floatingPanel = YES;  // sets a level of its own, so the level comes after it
  panel.level = floatingLevel;
  panel.collectionBehavior = behavior;
  panel.opaque = NO;
  panel.backgroundColor = NSColor.clearColor;
  panel.movable = NO;
  panel.releasedWhenClosed = NO;
  panel.hidesOnDeactivate = NO;
  panel.title = toNSString(identity::name);  // for assistive technology: nothing shows it
}

}  // namespace kestrow::appkit
