// A function as the target of a control.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

@interface KestrowAction : NSObject

- (nonnull instancetype)initWithFunction:(std::function<void()>)function;

// Calls the function, which may take this object and its control away.
- (void)run:(nullable id)sender;

@end
