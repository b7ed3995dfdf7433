// What Kestrow uses of Grand Central Dispatch.
#pragma once

#include <stdint.h>

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@protocol OS_dispatch_queue<NSObject>
@end
@protocol OS_dispatch_source<NSObject>
@end
typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_source>* dispatch_source_t;
typedef void (^dispatch_block_t)(void);
typedef uint64_t dispatch_time_t;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;

#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)
#define DISPATCH_TIMER_STRICT 0x1

extern "C" {
extern const struct dispatch_source_type_s _dispatch_source_type_timer;
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)

dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle,
                                         uintptr_t mask, dispatch_queue_t _Nullable queue);
void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t interval,
                               uint64_t leeway);
void dispatch_source_set_event_handler(dispatch_source_t source,
                                       dispatch_block_t _Nullable handler);
void dispatch_source_cancel(dispatch_source_t source);
void dispatch_resume(dispatch_source_t object);
}

NS_ASSUME_NONNULL_END
