#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAttributedStringKey;

@interface NSAttributedString : NSObject<NSCopying>
- (instancetype)initWithString:(NSString*)text
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
@end

@interface NSMutableAttributedString : NSAttributedString
- (void)appendAttributedString:(NSAttributedString*)text;
@end

NS_ASSUME_NONNULL_END
