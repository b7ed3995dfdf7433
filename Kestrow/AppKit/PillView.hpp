// The view in the pill's window: draws the pill, and passes its clicks on.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

namespace kestrow {
class PillSurfaceClient;
}

@interface KestrowPillView : NSView

// Draws nothing and answers nothing once the client is taken away with null.
@property(nonatomic, nullable) kestrow::PillSurfaceClient* client;

// A layer to keep above what the view draws.
@property(nonatomic, strong, nullable) CALayer* overlay;

@end
