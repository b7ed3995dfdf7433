// The panel's content in its frame: a background that blurs what is behind the window, round at its
// corners, and a scroll view in it.
#pragma once

#import <AppKit/AppKit.h>

namespace kestrow::appkit {

// A scroll view over the stack, which it gives the panel's width and margins.
NSScrollView* _Nonnull makePanelScroll(NSStackView* _Nonnull stack);

// The background with the scroll view all over it.
NSView* _Nonnull makePanelBackground(NSScrollView* _Nonnull scroll);

// Keeps what is at the top of the part in sight where it is while the content above it changes.
class ScrollPlace {
 public:
  // Where the content in sight begins in the stack, which fills the scroll view's document.
  ScrollPlace(NSScrollView* _Nonnull scroll, NSStackView* _Nonnull stack);

  // Scrolls back to it, by the content as it is laid out now. Content at its top stays there.
  void restore() const;

 private:
  NSScrollView* _Nonnull scroll_;
  NSView* _Nullable top_ = nil;  // the view in sight that is furthest up
  double offset_ = 0;            // from its top to the top of what is in sight
};

}  // namespace kestrow::appkit
