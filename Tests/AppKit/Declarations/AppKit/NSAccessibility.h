#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAccessibilityRole;
typedef NSString* NSAccessibilityNotificationName;
typedef NSString* NSAccessibilityNotificationUserInfoKey;
extern NSAccessibilityRole const NSAccessibilityButtonRole;
extern NSAccessibilityRole const NSAccessibilityGroupRole;
extern NSAccessibilityNotificationName const NSAccessibilityAnnouncementRequestedNotification;
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityAnnouncementKey;
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityPriorityKey;

typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel) {
  NSAccessibilityPriorityLow = 10,
  NSAccessibilityPriorityMedium = 50,
  NSAccessibilityPriorityHigh = 90,
};

extern NSAccessibilityNotificationName const NSAccessibilityLayoutChangedNotification;
void NSAccessibilityPostNotification(id element, NSAccessibilityNotificationName notification);
void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* _Nullable userInfo);

@protocol NSAccessibility<NSObject>
@property(getter=isAccessibilityElement) BOOL accessibilityElement;
@property(nullable, copy) NSAccessibilityRole accessibilityRole;
@property(nullable, copy) NSString* accessibilityLabel;
@property(nullable, copy) NSString* accessibilityHelp;
- (BOOL)accessibilityPerformPress;
@end

NS_ASSUME_NONNULL_END
