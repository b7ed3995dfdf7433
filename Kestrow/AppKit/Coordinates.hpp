// Rectangles between the program and AppKit. Both have the origin at the bottom left, y upwards.
#pragma once

#include "KestrowCore/Geometry.hpp"

#import <Foundation/Foundation.h>

namespace kestrow::appkit {

inline NSRect toNSRect(const Rect& rect) {
  return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

inline NSPoint toNSPoint(Point point) {
  return NSMakePoint(point.x, point.y);
}

inline Rect toRect(NSRect rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

}  // namespace kestrow::appkit
