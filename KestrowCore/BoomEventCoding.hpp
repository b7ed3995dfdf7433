// How key events and the answer that carries them travel as JSON.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/MatchCoding.hpp"

#include <string>
#include <string_view>
#include <tuple>

namespace kestrow {

// The answer as the score service sends it. Bytes of a text that are not UTF-8 become U+FFFD.
std::string encode(const ProMatchPayload& payload);

namespace json {

// Forgiving: a service that learns a new kind must not silence the events that we know.
template <>
struct Text<BoomKind> {
  static BoomKind parse(std::string_view text);
  static std::string format(BoomKind kind);
};

template <>
struct Record<BoomEvent> {
  static auto fields(auto& event) {
    return std::tuple(required("id", event.id), required("kind", event.kind),
                      required("team", event.team), optional("batter", event.batter),
                      optional("field", event.field), required("late", event.late),
                      required("at", event.at));
  }
};

template <>
struct Record<ProMatchPayload> {
  static auto fields(auto& payload) {
    return std::tuple(
        required("match", payload.match), required("newestEventId", payload.newestEventId),
        required("events", payload.events), required("keyMoments", payload.keyMoments),
        optional("nextFixture", payload.nextFixture));
  }
};

}  // namespace json
}  // namespace kestrow
