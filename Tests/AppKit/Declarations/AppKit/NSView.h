#pragma once

#import <AppKit/NSAccessibility.h>
#import <AppKit/NSGraphics.h>

NS_ASSUME_NONNULL_BEGIN

@class NSWindow;
@class NSLayoutConstraint;
@class NSLayoutDimension;
@class NSLayoutXAxisAnchor;
@class NSLayoutYAxisAnchor;

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
  NSEventMaskLeftMouseDown = 1ULL << 1,
  NSEventMaskRightMouseDown = 1ULL << 3,
  NSEventMaskKeyDown = 1ULL << 10,
};
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
  NSEventModifierFlagCapsLock = 1 << 16,
  NSEventModifierFlagShift = 1 << 17,
  NSEventModifierFlagControl = 1 << 18,
  NSEventModifierFlagOption = 1 << 19,
  NSEventModifierFlagCommand = 1 << 20,
  NSEventModifierFlagDeviceIndependentFlagsMask = 0xffff0000UL,
};

@interface NSEvent : NSObject<NSCopying>
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) unsigned short keyCode;
@property(nullable, readonly, copy) NSString* charactersIgnoringModifiers;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask
                                             handler:(void (^)(NSEvent* event))block;
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:
                                                (NSEvent* _Nullable (^)(NSEvent* event))block;
+ (void)removeMonitor:(id)monitor;
@end

@interface NSResponder : NSObject
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (void)mouseDown:(NSEvent*)event;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
@end

typedef NS_ENUM(NSInteger, NSViewLayerContentsRedrawPolicy) {
  NSViewLayerContentsRedrawNever = 0,
  NSViewLayerContentsRedrawOnSetNeedsDisplay = 1,
  NSViewLayerContentsRedrawDuringViewResize = 2,
};

@interface NSLayoutAnchor<AnchorType> : NSObject<NSCopying>
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor;
@end
@interface NSLayoutXAxisAnchor : NSLayoutAnchor<NSLayoutXAxisAnchor*>
@end
@interface NSLayoutYAxisAnchor : NSLayoutAnchor<NSLayoutYAxisAnchor*>
@end
@interface NSLayoutDimension : NSLayoutAnchor<NSLayoutDimension*>
- (NSLayoutConstraint*)constraintEqualToConstant:(CGFloat)constant;
- (NSLayoutConstraint*)constraintLessThanOrEqualToConstant:(CGFloat)constant;
@end

@interface NSLayoutConstraint : NSObject
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints;
@property(getter=isActive) BOOL active;
@end

typedef NSString* NSUserInterfaceItemIdentifier;

@interface NSView : NSResponder<NSAccessibility>
- (instancetype)initWithFrame:(NSRect)frame NS_DESIGNATED_INITIALIZER;
@property(nullable, readonly, weak) NSWindow* window;
@property NSRect frame;
@property NSRect bounds;
@property(getter=isHidden) BOOL hidden;
@property(readonly, getter=isFlipped) BOOL flipped;
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
@property BOOL needsDisplay;
@property NSViewLayerContentsRedrawPolicy layerContentsRedrawPolicy;
@property BOOL translatesAutoresizingMaskIntoConstraints;
@property(nullable, copy) NSUserInterfaceItemIdentifier identifier;
@property(readonly) NSSize fittingSize;
@property(readonly, strong) NSLayoutXAxisAnchor* leadingAnchor;
@property(readonly, strong) NSLayoutXAxisAnchor* trailingAnchor;
@property(readonly, strong) NSLayoutYAxisAnchor* topAnchor;
@property(readonly, strong) NSLayoutYAxisAnchor* bottomAnchor;
@property(readonly, strong) NSLayoutDimension* widthAnchor;
- (void)setBoundsOrigin:(NSPoint)origin;
- (void)viewWillDraw;
- (void)display;
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;
- (void)drawRect:(NSRect)dirtyRect;
- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event;
- (void)viewDidMoveToWindow;
- (void)viewDidChangeBackingProperties;
- (void)layoutSubtreeIfNeeded;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
@end

typedef NS_ENUM(NSInteger, NSVisualEffectMaterial) { NSVisualEffectMaterialPopover = 6 };
typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) {
  NSVisualEffectBlendingModeBehindWindow,
  NSVisualEffectBlendingModeWithinWindow,
};
typedef NS_ENUM(NSInteger, NSVisualEffectState) {
  NSVisualEffectStateFollowsWindowActiveState,
  NSVisualEffectStateActive,
  NSVisualEffectStateInactive,
};

@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@end

@interface NSClipView : NSView
- (void)scrollToPoint:(NSPoint)point;
@end

@interface NSScrollView : NSView
@property(nullable, strong) __kindof NSView* documentView;
@property(strong) NSClipView* contentView;
@property BOOL drawsBackground;
@property BOOL hasVerticalScroller;
@property BOOL autohidesScrollers;
- (void)reflectScrolledClipView:(NSClipView*)view;
@end

typedef NS_ENUM(NSInteger, NSUserInterfaceLayoutOrientation) {
  NSUserInterfaceLayoutOrientationHorizontal = 0,
  NSUserInterfaceLayoutOrientationVertical = 1,
};
typedef NS_ENUM(NSInteger, NSLayoutAttribute) {
  NSLayoutAttributeLeading = 5,
  NSLayoutAttributeFirstBaseline = 12,
};

@interface NSStackView : NSView
+ (instancetype)stackViewWithViews:(NSArray<NSView*>*)views;
@property NSUserInterfaceLayoutOrientation orientation;
@property NSLayoutAttribute alignment;
@property CGFloat spacing;
@property NSEdgeInsets edgeInsets;
@property(readonly, copy) NSArray<__kindof NSView*>* arrangedSubviews;
- (void)insertArrangedSubview:(NSView*)view atIndex:(NSInteger)index;
@end

NS_ASSUME_NONNULL_END
