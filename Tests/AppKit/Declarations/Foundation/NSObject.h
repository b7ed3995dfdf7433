// The root of Objective-C's classes, and the types that every other declaration needs.
#pragma once

#include <stddef.h>
#include <stdint.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_REQUIRES_SUPER __attribute__((objc_requires_super))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define NS_NOESCAPE __attribute__((noescape))
#define API_AVAILABLE_MACOS(version) __attribute__((availability(macos, introduced = version)))
#define NS_ENUM(type, name) \
  enum __attribute__((enum_extensibility(open))) name : type name; \
  enum name : type
// In Objective-C++ the constants of an option set are plain integers.
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#ifdef __arm64__
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double CGFloat;
typedef double NSTimeInterval;

struct _NSZone;

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)isKindOfClass:(Class)kind;
@property(readonly) NSUInteger hash;
- (instancetype)self;
@end

@protocol NSCopying
- (id)copyWithZone:(nullable struct _NSZone*)zone;
@end

@protocol NSCoding
@end

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(void*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (void)dealloc;
+ (Class)class;
- (id)copy;
@property(readonly, copy) NSString* description;
@end

NS_ASSUME_NONNULL_END
