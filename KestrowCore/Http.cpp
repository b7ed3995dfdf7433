#include "KestrowCore/Http.hpp"

#include <algorithm>
#include <string_view>

namespace kestrow {

namespace {

// A header name is a token of RFC 9110; anything else could smuggle in a second header.
bool isHeaderName(std::string_view name) {
  constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
  return !name.empty() && std::ranges::all_of(name, [&](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           marks.contains(c);
  });
}

bool hasControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) {
    return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
  });
}

}  // namespace

std::optional<std::string> defect(const HttpRequest& request) {
  if (hasControls(request.url)) return "The URL holds control characters";
  for (const auto& [name, value] : request.headers) {
    if (!isHeaderName(name)) return "A header has a name that is none";
    if (hasControls(value)) return "The header " + name + " holds control characters";
  }
  return std::nullopt;
}

}  // namespace kestrow
