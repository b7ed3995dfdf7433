// What the program's two windows have in common.
#pragma once

#import <AppKit/AppKit.h>

namespace kestrow::appkit {

// Above the menu bar (24) and the status items (25), below pop-up menus (101).
inline constexpr NSWindowLevel floatingLevel = 27;

// On every Space, beside the full-screen programs' own windows, and not among those that ⌘` walks
// through. The pill also stays where it is while Mission Control moves the others.
inline constexpr NSWindowCollectionBehavior panelBehavior =
    NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorIgnoresCycle |
    NSWindowCollectionBehaviorFullScreenAuxiliary;
inline constexpr NSWindowCollectionBehavior pillBehavior =
    panelBehavior | NSWindowCollectionBehaviorStationary;

// Without a title and edges to drag. Using them leaves the program in front that is there.
inline constexpr NSWindowStyleMask floatingStyle =
    NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel;

// Makes the panel a see-through one that floats above everything, stays where the program puts it,
// and is there while another program is in front, which for this one is always.
void makeFloating(NSPanel* _Nonnull panel, NSWindowCollectionBehavior behavior);

}  // namespace kestrow::appkit
