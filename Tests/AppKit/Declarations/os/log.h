// What Kestrow uses of the unified log. The real one is a macro; the compiler checks the format of
// both.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@protocol OS_os_log<NSObject>
@end
typedef NSObject<OS_os_log>* os_log_t;

extern "C" {
extern os_log_t const OS_LOG_DEFAULT;
void os_log(os_log_t log, const char* format, ...) __attribute__((format(os_log, 2, 3)));
}

NS_ASSUME_NONNULL_END
