#include "KestrowCore/JsonRecord.hpp"

namespace kestrow::json {

namespace {

std::string_view nameOf(Kind kind) {
  switch (kind) {
    case Kind::null:
      return "null";
    case Kind::boolean:
      return "a boolean";
    case Kind::number:
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

std::string pathOf(const Place& place) {
  if (!place.outer) return "";
  auto path = pathOf(*place.outer);
  if (!place.key.data()) return path + '[' + std::to_string(place.index) + ']';
  if (!isPlainKey(place.key)) return path + "[\"" + std::string(place.key) + "\"]";
  if (!path.empty()) path += '.';
  return path + std::string(place.key);
}

}  // namespace

bool Decoder::read(const Value& value, bool& out, const Place& place) {
  const auto boolean = value.boolean();
  if (!boolean) return mismatch(place, "a boolean", value);
  out = *boolean;
  return true;
}

bool Decoder::read(const Value& value, std::int64_t& out, const Place& place) {
  const auto integer = value.integer();
  if (!integer) {
    if (value.kind() != Kind::number) return mismatch(place, "an integer", value);
    return fail(place, "the number is not an integer of 64 bits");
  }
  out = *integer;
  return true;
}

bool Decoder::read(const Value& value, double& out, const Place& place) {
  const auto number = value.number();
  if (!number) return mismatch(place, "a number", value);
  out = *number;
  return true;
}

bool Decoder::read(const Value& value, std::string& out, const Place& place) {
  const auto text = value.text();
  if (!text) return mismatch(place, "a text", value);
  out = *text;
  return true;
}

bool Decoder::fail(const Place& place, std::string reason) {
  failure_ = {.path = pathOf(place), .reason = std::move(reason)};
  return false;
}

bool Decoder::mismatch(const Place& place, std::string_view expected, const Value& found) {
  return fail(place,
              "expected " + std::string(expected) + ", found " + std::string(nameOf(found.kind())));
}

}  // namespace kestrow::json
