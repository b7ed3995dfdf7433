#include "Kestrow/AppKit/PanelScroll.hpp"

#include "Kestrow/AppKit/PanelItem.hpp"

// So that content grows downwards from the top.
@interface KestrowFlippedView : NSView
@end

@implementation KestrowFlippedView

- (BOOL)isFlipped {
  return YES;
}

@end

namespace kestrow::appkit {

namespace {

void pin(NSView* inner, NSView* outer) {
  inner.translatesAutoresizingMaskIntoConstraints = NO;
  [NSLayoutConstraint activateConstraints:@[
    [inner.topAnchor constraintEqualToAnchor:outer.topAnchor],
    [inner.bottomAnchor constraintEqualToAnchor:outer.bottomAnchor],
    [inner.leadingAnchor constraintEqualToAnchor:outer.leadingAnchor],
    [inner.trailingAnchor constraintEqualToAnchor:outer.trailingAnchor],
  ]];
}

// Inside the document, whose y grows downwards.
NSRect frameInDocument(NSView* view, NSScrollView* scroll) {
  return [view convertRect:view.bounds toView:scroll.documentView];
}

// The first view at or below the height, boxes opened up.
NSView* firstBelow(double top, NSStackView* stack, NSScrollView* scroll) {
  for (NSView* view in stack.arrangedSubviews) {
    if (view.hidden || NSMaxY(frameInDocument(view, scroll)) <= top) continue;
    if ([view isKindOfClass:NSStackView.class]) {
      NSView* inner = firstBelow(top, static_cast<NSStackView*>(view), scroll);
      if (inner != nil) return inner;
    }
    return view;
  }
  return nil;
}

}  // namespace

NSScrollView* makePanelScroll(NSStackView* stack) {
  constexpr CGFloat inset = PanelMeasure::inset;
  stack.edgeInsets = NSEdgeInsetsMake(inset, inset, inset, inset);
  [stack.widthAnchor constraintEqualToConstant:PanelMeasure::width].active = YES;

  NSView* document = [[KestrowFlippedView alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)];
  document.translatesAutoresizingMaskIntoConstraints = NO;
  [document addSubview:stack];
  pin(stack, document);

  NSScrollView* scroll = [[NSScrollView alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)];
  scroll.drawsBackground = NO;
  scroll.hasVerticalScroller = YES;
  scroll.autohidesScrollers = YES;
  scroll.documentView = document;
  NSClipView* clip = scroll.contentView;
  [NSLayoutConstraint activateConstraints:@[
    [document.topAnchor constraintEqualToAnchor:clip.topAnchor],
    [document.leadingAnchor constraintEqualToAnchor:clip.leadingAnchor],
    [document.widthAnchor constraintEqualToConstant:PanelMeasure::width],
  ]];
  return scroll;
}

NSView* makePanelBackground(NSScrollView* scroll) {
  NSVisualEffectView* effect = [[NSVisualEffectView alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)];
  effect.material = NSVisualEffectMaterialPopover;
  effect.state = NSVisualEffectStateActive;
  effect.blendingMode = NSVisualEffectBlendingModeBehindWindow;
  effect.wantsLayer = YES;
  effect.layer.cornerRadius = PanelMeasure::cornerRadius;
  effect.layer.masksToBounds = YES;
  [effect addSubview:scroll];
  pin(scroll, effect);
  return effect;
}

ScrollPlace::ScrollPlace(NSScrollView* scroll, NSStackView* stack) : scroll_(scroll) {
  const double top = NSMinY(scroll.contentView.bounds);
  if (top <= 0) return;
  top_ = firstBelow(top, stack, scroll);
  if (top_) offset_ = top - NSMinY(frameInDocument(top_, scroll));
}

void ScrollPlace::restore() const {
  NSView* view = top_;
  if (view == nil || view.window == nil) return;
  NSClipView* clip = scroll_.contentView;
  [clip scrollToPoint:NSMakePoint(0, NSMinY(frameInDocument(view, scroll_)) + offset_)];
  [scroll_ reflectScrolledClipView:clip];
}

}  // namespace kestrow::appkit
