#import "Kestrow/AppKit/PillView.hpp"

#include "Kestrow/AppKit/AppKitCanvas.hpp"
#include "Kestrow/AppKit/Coordinates.hpp"
#include "Kestrow/Platform/PillSurface.hpp"

@interface KestrowPillView ()
- (void)attachOverlay;
- (NSPoint)originInTarget;
@end

@implementation KestrowPillView

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self) {
    self.wantsLayer = YES;
    self.layerContentsRedrawPolicy = NSViewLayerContentsRedrawDuringViewResize;
    self.accessibilityElement = YES;
    self.accessibilityRole = NSAccessibilityButtonRole;
  }
  return self;
}

- (void)setOverlay:(nullable CALayer*)overlay {
  [_overlay removeFromSuperlayer];
  _overlay = overlay;
  [self attachOverlay];
}

- (void)attachOverlay {
  CALayer* overlay = self.overlay;
  CALayer* own = self.layer;
  if (overlay == nil || own == nil || overlay.superlayer == own) return;
  overlay.zPosition = 1;
  [own addSublayer:overlay];
  if (self.didAttachOverlay) self.didAttachOverlay();
}

// The view's own layer may be made anew with the window.
- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  [self attachOverlay];
}

- (void)viewDidChangeBackingProperties {
  [super viewDidChangeBackingProperties];
  self.needsDisplay = YES;
}

- (NSPoint)originInTarget {
  const auto move = self.move;
  NSWindow* window = self.window;
  if (!move || !move->isUnderWay || window == nil) return NSMakePoint(0, 0);
  const NSPoint corner = window.frame.origin;
  return NSMakePoint(corner.x - move->target.x, corner.y - move->target.y);
}

// By now the window's frame is the one that this picture is for.
- (void)viewWillDraw {
  [self setBoundsOrigin:[self originInTarget]];
  [super viewWillDraw];
}

// Always the whole view: what is asked for may reach beyond it.
- (void)drawRect:(NSRect)dirtyRect {
  [NSColor.clearColor set];
  NSRectFillUsingOperation(self.bounds, NSCompositingOperationCopy);
  if (!self.client) return;
  kestrow::appkit::AppKitCanvas canvas;
  // Without a window the scale is 0, which says so.
  self.client->draw(canvas, kestrow::appkit::toRect(self.bounds), self.window.backingScaleFactor);
}

- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event {
  return YES;
}

- (void)mouseDown:(NSEvent*)event {
  if (self.client) self.client->click();
}

- (BOOL)accessibilityPerformPress {
  if (!self.client) return NO;
  self.client->click();
  return YES;
}

@end
