// Text between the program, which has UTF-8, and Foundation.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace kestrow::appkit {

// Bytes that are not UTF-8 become U+FFFD.
NSString* _Nonnull toNSString(std::string_view utf8);

// Nothing gives an empty text.
std::string toUtf8(NSString* _Nullable text);

}  // namespace kestrow::appkit
