#include "Kestrow/AppKit/AppKitUserDefaults.hpp"

#import <Foundation/Foundation.h>

#include "Kestrow/AppKit/Strings.hpp"

namespace kestrow::appkit {

bool AppKitUserDefaults::boolean(std::string_view key) const {
  return [NSUserDefaults.standardUserDefaults boolForKey:toNSString(key)];
}

void AppKitUserDefaults::setBoolean(std::string_view key, bool value) {
  [NSUserDefaults.standardUserDefaults setBool:value forKey:toNSString(key)];
}

}  // namespace kestrow::appkit
