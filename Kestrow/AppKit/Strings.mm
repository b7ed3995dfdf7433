#include "Kestrow/AppKit/Strings.hpp"

#include "KestrowCore/Text.hpp"

namespace kestrow::appkit {

namespace {

NSString* _Nullable decoded(std::string_view utf8) {
  return [[NSString alloc] initWithBytes:utf8.data()
                                  length:utf8.size()
                                encoding:NSUTF8StringEncoding];
}

}  // namespace

NSString* toNSString(std::string_view utf8) {
  if (NSString* text = decoded(utf8)) return text;
  if (NSString* text = decoded(text::validated(utf8))) return text;
  return @"";
}

std::string toUtf8(NSString* text) {
  const char* bytes = text.UTF8String;
  return bytes != nullptr ? std::string(bytes) : std::string();
}

}  // namespace kestrow::appkit
