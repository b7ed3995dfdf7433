// What a user would see of an answer: the texts of the pill, the picker and the log.
#pragma once

#include "KestrowCore/BoomEvent.hpp"
#include "KestrowCore/Match.hpp"

namespace kestrow::fuzz {

// Words every match of the list as the pill and the picker would, and checks what holds for all of
// their texts: they are Unicode, fit their limits, and keep what they are made of.
void show(const MatchesResponse& response);

// Takes the events in as the log and the alerts do, and checks their order and number.
void show(const ProMatchPayload& payload);

}  // namespace kestrow::fuzz
