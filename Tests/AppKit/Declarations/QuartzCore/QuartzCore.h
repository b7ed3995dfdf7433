// What Kestrow uses of Core Animation.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef struct CGColor* CGColorRef;

typedef NSString* CAMediaTimingFunctionName;
extern CAMediaTimingFunctionName const kCAMediaTimingFunctionEaseInEaseOut;

@interface CAMediaTimingFunction : NSObject
+ (instancetype)functionWithName:(CAMediaTimingFunctionName)name;
@end

@protocol CAMediaTiming
@property double duration;
@property float repeatCount;
@property BOOL autoreverses;
@end

@interface CAAnimation : NSObject<NSCopying, CAMediaTiming>
+ (instancetype)animation;
@property(nullable, strong) CAMediaTimingFunction* timingFunction;
@end

@interface CAPropertyAnimation : CAAnimation
+ (instancetype)animationWithKeyPath:(nullable NSString*)path;
@property(nullable, copy) NSString* keyPath;
@end

@interface CABasicAnimation : CAPropertyAnimation
@property(nullable, strong) id fromValue;
@property(nullable, strong) id toValue;
@end

@interface CAAnimationGroup : CAAnimation
@property(nullable, copy) NSArray<CAAnimation*>* animations;
@end

@interface CALayer : NSObject<CAMediaTiming>
+ (instancetype)layer;
@property CGRect frame;
@property CGFloat zPosition;
@property(getter=isHidden) BOOL hidden;
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@property(nullable) CGColorRef backgroundColor;
@property(nullable) CGColorRef shadowColor;
@property float shadowOpacity;
@property CGSize shadowOffset;
@property CGFloat shadowRadius;
- (nullable NSArray<NSString*>*)animationKeys;
@property(nullable, readonly) CALayer* superlayer;
- (void)addSublayer:(CALayer*)layer;
- (void)removeFromSuperlayer;
- (void)addAnimation:(CAAnimation*)animation forKey:(nullable NSString*)key;
- (nullable __kindof CAAnimation*)animationForKey:(NSString*)key;
- (void)removeAnimationForKey:(NSString*)key;
- (void)removeAllAnimations;
@end

@interface CATransaction : NSObject
+ (void)begin;
+ (void)commit;
+ (void)setDisableActions:(BOOL)disabled;
@end

NS_ASSUME_NONNULL_END
