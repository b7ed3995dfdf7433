#pragma once

#import <AppKit/NSWindow.h>

NS_ASSUME_NONNULL_BEGIN

@class NSApplication;

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular,
  NSApplicationActivationPolicyAccessory,
  NSApplicationActivationPolicyProhibited,
};

@protocol NSApplicationDelegate<NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)visible;
- (void)applicationWillTerminate:(NSNotification*)notification;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)sender API_AVAILABLE_MACOS(12.0);
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(readonly, copy) NSArray<NSWindow*>* windows;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activate API_AVAILABLE_MACOS(14.0);
- (BOOL)sendAction:(SEL)action to:(nullable id)target from:(nullable id)sender;
- (void)run;
- (void)terminate:(nullable id)sender;
@end

extern NSNotificationName const NSApplicationDidChangeScreenParametersNotification;

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@end

extern NSNotificationName const NSWorkspaceWillSleepNotification;
extern NSNotificationName const NSWorkspaceDidWakeNotification;
extern NSNotificationName const NSWorkspaceScreensDidWakeNotification;
extern NSNotificationName const NSWorkspaceSessionDidBecomeActiveNotification;
extern NSNotificationName const NSWorkspaceActiveSpaceDidChangeNotification;
extern NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

NS_ASSUME_NONNULL_END
