#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSLocale : NSObject<NSCopying>
@property(class, readonly, copy) NSLocale* currentLocale;
@property(readonly, copy) NSString* localeIdentifier;
@end

typedef NSString* NSCalendarIdentifier;

@interface NSCalendar : NSObject<NSCopying>
@property(class, readonly, copy) NSCalendar* currentCalendar;
@property(readonly, copy) NSCalendarIdentifier calendarIdentifier;
@end

@interface NSTimeZone : NSObject<NSCopying>
@property(class, readonly, copy) NSTimeZone* localTimeZone;
@property(readonly, copy) NSString* name;
@end

@interface NSDateFormatter : NSObject
+ (nullable NSString*)dateFormatFromTemplate:(NSString*)skeleton
                                     options:(NSUInteger)options
                                      locale:(nullable NSLocale*)locale;
@end

NS_ASSUME_NONNULL_END
