// The view in the pill's window: draws the pill, and passes its clicks on.
#pragma once

#include "KestrowCore/Geometry.hpp"

#import <AppKit/AppKit.h>

#include <memory>

namespace kestrow {
class PillSurfaceClient;
}

namespace kestrow::appkit {

// A glide of the pill's window to another frame.
struct PillMove {
  Rect target;  // on the screen
  bool isUnderWay = true;
};

}  // namespace kestrow::appkit

@interface KestrowPillView : NSView

// Draws nothing and answers nothing once the client is taken away with null.
@property(nonatomic, nullable) kestrow::PillSurfaceClient* client;

// The latest of the window's moves. While it is under way, the view's coordinates are those of the
// frame that it leads to, so that what is drawn there, the overlay included, stays in its place.
@property(nonatomic) std::shared_ptr<const kestrow::appkit::PillMove> move;

// A layer to keep above what the view draws.
@property(nonatomic, strong, nullable) CALayer* overlay;

// Called each time that the overlay has got a layer to be in, which it then is in without
// animations.
@property(nonatomic, copy, nullable) void (^didAttachOverlay)(void);

@end
