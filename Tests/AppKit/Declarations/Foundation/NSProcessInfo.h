#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
  NSActivityIdleSystemSleepDisabled = 1ULL << 20,
  NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
  NSActivityUserInitiatedAllowingIdleSystemSleep =
      NSActivityUserInitiated & ~NSActivityIdleSystemSleepDisabled,
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

NS_ASSUME_NONNULL_END
