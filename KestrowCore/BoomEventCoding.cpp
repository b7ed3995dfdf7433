#include "KestrowCore/BoomEventCoding.hpp"

#include <array>
#include <cstddef>
#include <utility>

namespace kestrow {

namespace {

constexpr std::array<std::pair<BoomKind, std::string_view>, 5> kindTexts{{
    {BoomKind::four, "four"},
    {BoomKind::six, "six"},
    {BoomKind::wicket, "wicket"},
    {BoomKind::correction, "correction"},
    {BoomKind::other, "other"},
}};

}  // namespace

std::string encode(const ProMatchPayload& payload) {
  return json::encodeReplacing(payload);
}

namespace json {

BoomKind Text<BoomKind>::parse(std::string_view text) {
  for (const auto& [kind, kindText] : kindTexts) {
    if (kindText == text) return kind;
  }
  return BoomKind::other;
}

std::string Text<BoomKind>::format(BoomKind kind) {
  return std::string(kindTexts.at(static_cast<std::size_t>(kind)).second);
}

}  // namespace json
}  // namespace kestrow
