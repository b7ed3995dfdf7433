// What Kestrow uses of AppKit, declared by us from its documented interface.
#pragma once

#import <AppKit/NSApplication.h>
#import <AppKit/NSControl.h>
