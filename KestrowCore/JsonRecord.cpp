#include "KestrowCore/JsonRecord.hpp"

#include <algorithm>
#include <string>

namespace kestrow::json {

namespace {

std::string_view nameOf(Kind kind) {
  switch (kind) {
    case Kind::null:
      return "null";
    case Kind::boolean:
      return "a boolean";
    case Kind::integer:
      return "an integer";
    case Kind::real:
      return "a number";
    case Kind::text:
      return "a text";
    case Kind::array:
      return "a list";
    case Kind::object:
      break;
  }
  return "an object";
}

bool isPlainKey(std::string_view key) {
  const auto isPlain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-';
  };
  return !key.empty() && std::ranges::all_of(key, isPlain);
}

}  // namespace

bool Decoder::fail(std::string reason) {
  failure_ = {.path = "", .reason = std::move(reason)};
  return false;
}

bool Decoder::mismatch(std::string_view expected, const Value& found) {
  return fail("expected " + std::string(expected) + ", found " + std::string(nameOf(found.kind())));
}

bool Decoder::failedAt(std::string_view key) {
  return failedUnder(isPlainKey(key) ? std::string(key) : "[\"" + std::string(key) + "\"]");
}

bool Decoder::failedAt(std::size_t index) {
  return failedUnder('[' + std::to_string(index) + ']');
}

bool Decoder::failedUnder(std::string step) {
  const bool needsDot = !failure_.path.empty() && !failure_.path.starts_with('[');
  failure_.path = std::move(step) + (needsDot ? "." : "") + failure_.path;
  return false;
}

}  // namespace kestrow::json
