#import "Kestrow/AppKit/PanelWindow.hpp"

#include "Kestrow/AppKit/FloatingPanel.hpp"
#include "Kestrow/AppKit/Strings.hpp"
#include "Kestrow/PanelKeys.hpp"
#include "Kestrow/PanelMeasure.hpp"

// The actions that text views answer; AppKit declares the first four for text only, the others
// nowhere.
@protocol KestrowEditing
- (void)cut:(nullable id)sender;
- (void)copy:(nullable id)sender;
- (void)paste:(nullable id)sender;
- (void)selectAll:(nullable id)sender;
- (void)undo:(nullable id)sender;
- (void)redo:(nullable id)sender;
@end

namespace kestrow::appkit {

namespace {

KeyModifiers modifiersOf(NSEvent* event) {
  const NSUInteger held = event.modifierFlags & NSEventModifierFlagDeviceIndependentFlagsMask;
  constexpr NSUInteger own = NSEventModifierFlagCommand | NSEventModifierFlagShift;
  return {.command = (held & NSEventModifierFlagCommand) != 0,
          .shift = (held & NSEventModifierFlagShift) != 0,
          .other = (held & ~own) != 0};
}

SEL selectorOf(EditAction action) {
  switch (action) {
    case EditAction::cut:
      return @selector(cut:);
    case EditAction::copy:
      return @selector(copy:);
    case EditAction::paste:
      return @selector(paste:);
    case EditAction::selectAll:
      return @selector(selectAll:);
    case EditAction::undo:
      return @selector(undo:);
    case EditAction::redo:
      break;
  }
  return @selector(redo:);
}

}  // namespace

NSPanel* makePanelWindow() {
  NSPanel* panel =
      [[KestrowPanelWindow alloc] initWithContentRect:NSMakeRect(0, 0, PanelMeasure::width, 400)
                                            styleMask:floatingStyle
                                              backing:NSBackingStoreBuffered
                                                defer:NO];
  makeFloating(panel, panelBehavior);
  panel.hasShadow = YES;
  panel.becomesKeyOnlyIfNeeded = NO;
  panel.autorecalculatesKeyViewLoop = YES;
  return panel;
}

}  // namespace kestrow::appkit

@implementation KestrowPanelWindow

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)canBecomeMainWindow {
  return NO;
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
  using namespace kestrow;
  const auto action =
      keyEquivalent(appkit::modifiersOf(event), appkit::toUtf8(event.charactersIgnoringModifiers));
  if (action && [NSApplication.sharedApplication sendAction:appkit::selectorOf(*action)
                                                         to:nil
                                                       from:self]) {
    return YES;
  }
  return [super performKeyEquivalent:event];
}

@end
