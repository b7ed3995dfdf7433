#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, nullable, readonly, strong) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly) NSEdgeInsets safeAreaInsets API_AVAILABLE_MACOS(12.0);
@property(readonly) NSRect auxiliaryTopLeftArea API_AVAILABLE_MACOS(12.0);
@property(readonly) NSRect auxiliaryTopRightArea API_AVAILABLE_MACOS(12.0);
@end

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskBorderless = 0,
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};
typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
  NSWindowCollectionBehaviorDefault = 0,
  NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
  NSWindowCollectionBehaviorStationary = 1 << 4,
  NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};
typedef NS_ENUM(NSUInteger, NSBackingStoreType) { NSBackingStoreBuffered = 2 };
typedef NS_ENUM(NSUInteger, NSWindowSharingType) {
  NSWindowSharingNone = 0,
  NSWindowSharingReadOnly = 1,
};
typedef NS_ENUM(NSInteger, NSWindowAnimationBehavior) {
  NSWindowAnimationBehaviorDefault = 0,
  NSWindowAnimationBehaviorNone = 2,
};
typedef NSInteger NSWindowLevel;

@protocol NSAnimatablePropertyContainer
- (instancetype)animator;
@end

@protocol NSWindowDelegate<NSObject>
@optional
- (void)windowDidResignKey:(NSNotification*)notification;
@end

extern NSNotificationName const NSWindowDidChangeOcclusionStateNotification;

@interface NSWindow : NSResponder<NSAnimatablePropertyContainer, NSAccessibility>
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)defer NS_DESIGNATED_INITIALIZER;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(nullable, strong) __kindof NSView* contentView;
@property(copy) NSString* title;
@property NSWindowStyleMask styleMask;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property(getter=isMovable) BOOL movable;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property BOOL hidesOnDeactivate;
@property NSWindowSharingType sharingType;
@property NSWindowAnimationBehavior animationBehavior;
@property BOOL autorecalculatesKeyViewLoop;
@property(readonly) NSRect frame;
@property(readonly) CGFloat backingScaleFactor;
@property(readonly, getter=isVisible) BOOL visible;
@property(readonly, getter=isKeyWindow) BOOL keyWindow;
@property(readonly) BOOL canBecomeKeyWindow;
@property(readonly) BOOL canBecomeMainWindow;
- (void)setFrame:(NSRect)frame display:(BOOL)display;
- (NSRect)constrainFrameRect:(NSRect)frame toScreen:(nullable NSScreen*)screen;
- (void)invalidateShadow;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@end

@interface NSAnimationContext : NSObject
+ (void)runAnimationGroup:(void(NS_NOESCAPE ^)(NSAnimationContext* context))changes
        completionHandler:(nullable void (^)(void))completionHandler;
@property NSTimeInterval duration;
@end

NS_ASSUME_NONNULL_END
