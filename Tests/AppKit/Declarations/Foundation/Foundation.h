// What Kestrow uses of Foundation, declared by us from its documented interface, so that the code
// for macOS can be checked on a system without Apple's headers.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSUserDefaults.h>
