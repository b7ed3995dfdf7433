// The panel's window class: takes the keyboard without making the program the active one, and
// routes the editing shortcuts that a program without a menu bar does not get.
#pragma once

#import <AppKit/AppKit.h>

@interface KestrowPanelWindow : NSPanel
@end

namespace kestrow::appkit {

NSPanel* _Nonnull makePanelWindow();

}  // namespace kestrow::appkit
