#pragma once

#import <Foundation/Foundation.h>
#import <QuartzCore/QuartzCore.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSCompositingOperation) {
  NSCompositingOperationClear,
  NSCompositingOperationCopy,
  NSCompositingOperationSourceOver,
};
void NSRectFillUsingOperation(NSRect rect, NSCompositingOperation operation);

@interface NSColor : NSObject<NSCopying>
+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha;
@property(class, readonly, strong) NSColor* clearColor;
@property(class, readonly, strong) NSColor* secondaryLabelColor;
@property(readonly) CGColorRef CGColor NS_RETURNS_INNER_POINTER;
- (void)set;
- (void)setFill;
- (void)setStroke;
@end

typedef CGFloat NSFontWeight;
extern const NSFontWeight NSFontWeightRegular;
extern const NSFontWeight NSFontWeightMedium;
extern const NSFontWeight NSFontWeightSemibold;
extern const NSFontWeight NSFontWeightBold;
extern const NSFontWeight NSFontWeightHeavy;

@interface NSFont : NSObject<NSCopying>
+ (NSFont*)systemFontOfSize:(CGFloat)size;
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (NSFont*)boldSystemFontOfSize:(CGFloat)size;
@property(class, readonly) CGFloat systemFontSize;
@property(class, readonly) CGFloat smallSystemFontSize;
@end

@interface NSShadow : NSObject<NSCopying>
@property NSSize shadowOffset;
@property CGFloat shadowBlurRadius;
@property(nullable, copy) NSColor* shadowColor;
@end

extern NSAttributedStringKey const NSFontAttributeName;
extern NSAttributedStringKey const NSForegroundColorAttributeName;
extern NSAttributedStringKey const NSKernAttributeName;
extern NSAttributedStringKey const NSShadowAttributeName;

@interface NSAttributedString (NSStringDrawing)
@property(readonly) NSSize size;
- (void)drawAtPoint:(NSPoint)point;
@end

@interface NSBezierPath : NSObject<NSCopying>
+ (NSBezierPath*)bezierPath;
@property CGFloat lineWidth;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)closePath;
- (void)appendBezierPathWithArcWithCenter:(NSPoint)center
                                   radius:(CGFloat)radius
                               startAngle:(CGFloat)startAngle
                                 endAngle:(CGFloat)endAngle
                                clockwise:(BOOL)clockwise;
- (void)fill;
- (void)stroke;
- (void)addClip;
@end

@interface NSGradient : NSObject<NSCopying>
- (nullable instancetype)initWithStartingColor:(NSColor*)startingColor
                                   endingColor:(NSColor*)endingColor;
- (void)drawInBezierPath:(NSBezierPath*)path angle:(CGFloat)angle;
@end

@interface NSGraphicsContext : NSObject
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

NS_ASSUME_NONNULL_END
