#pragma once

#import <Foundation/NSObject.h>

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
struct CGSize {
  CGFloat width;
  CGFloat height;
};
struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
struct NSEdgeInsets {
  CGFloat top;
  CGFloat left;
  CGFloat bottom;
  CGFloat right;
};

NSPoint NSMakePoint(CGFloat x, CGFloat y);
NSSize NSMakeSize(CGFloat width, CGFloat height);
NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height);
CGSize CGSizeMake(CGFloat width, CGFloat height);
NSEdgeInsets NSEdgeInsetsMake(CGFloat top, CGFloat left, CGFloat bottom, CGFloat right);
CGFloat NSMinY(NSRect rect);
CGFloat NSMaxY(NSRect rect);
BOOL NSIsEmptyRect(NSRect rect);
