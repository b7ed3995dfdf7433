// What Kestrow uses of Foundation, declared by us from its documented interface, so that the code
// for macOS can be checked on a system without Apple's headers.
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSAttributedString.h>
#import <Foundation/NSError.h>
#import <Foundation/NSGeometry.h>
#import <Foundation/NSLocale.h>
#import <Foundation/NSNotification.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSProcessInfo.h>
#import <Foundation/NSRunLoop.h>
#import <Foundation/NSString.h>
#import <Foundation/NSUserDefaults.h>
#import <Foundation/NSValue.h>
#import <dispatch/dispatch.h>
