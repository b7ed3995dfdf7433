#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSLineBreakMode) {
  NSLineBreakByWordWrapping = 0,
  NSLineBreakByTruncatingTail = 4,
};
typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property(getter=isEnabled) BOOL enabled;
@property(nullable, strong) NSFont* font;
@property(copy) NSString* stringValue;
@property NSLineBreakMode lineBreakMode;
- (void)performClick:(nullable id)sender;
@end

@interface NSTextField : NSControl
+ (instancetype)labelWithString:(NSString*)text;
+ (instancetype)wrappingLabelWithString:(NSString*)text;
@property(getter=isSelectable) BOOL selectable;
@property(nullable, copy) NSColor* textColor;
@property CGFloat preferredMaxLayoutWidth;
@end

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action;
+ (instancetype)checkboxWithTitle:(NSString*)title
                           target:(nullable id)target
                           action:(nullable SEL)action;
+ (instancetype)radioButtonWithTitle:(NSString*)title
                              target:(nullable id)target
                              action:(nullable SEL)action;
@property(copy) NSString* title;
@property NSControlStateValue state;
@end

@interface NSMenuItem : NSObject<NSCopying>
@end

@interface NSMenu : NSObject<NSCopying>
- (NSMenuItem*)addItemWithTitle:(NSString*)title
                         action:(nullable SEL)action
                  keyEquivalent:(NSString*)key;
@end

@interface NSPopUpButton : NSButton
- (instancetype)initWithFrame:(NSRect)frame pullsDown:(BOOL)pullsDown NS_DESIGNATED_INITIALIZER;
@property(nullable, strong) NSMenu* menu;
@property(readonly) NSInteger indexOfSelectedItem;
@property(readonly) NSInteger numberOfItems;
- (void)removeAllItems;
- (void)selectItemAtIndex:(NSInteger)index;
@end

typedef NS_ENUM(NSUInteger, NSBoxType) {
  NSBoxPrimary = 0,
  NSBoxSeparator = 2,
};

@interface NSBox : NSView
@property NSBoxType boxType;
@end

NS_ASSUME_NONNULL_END
