// What a score service sends, in sizes of choice: for measuring how long it takes to read.
#pragma once

#include <cstdint>
#include <string>

namespace kestrow::answers {

// A match list with so many matches, and an answer with so many key moments, as JSON.
std::string listOf(std::int64_t matches);
std::string eventsOf(std::int64_t events);

}  // namespace kestrow::answers
