#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject
@property(readonly, copy) NSNotificationName name;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
- (void)postNotificationName:(NSNotificationName)name object:(nullable id)object;
@end

extern NSNotificationName const NSSystemClockDidChangeNotification;
extern NSNotificationName const NSSystemTimeZoneDidChangeNotification;
extern NSNotificationName const NSCurrentLocaleDidChangeNotification;

NS_ASSUME_NONNULL_END
