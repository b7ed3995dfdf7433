// Numbers in the texts that people give the service.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrow::service {

// A decimal whole number that is the whole text and fits 64 bits, or nothing.
std::optional<std::int64_t> wholeNumber(std::string_view text);

// A finite decimal number that is the whole text, without exponent or sign, or nothing.
std::optional<double> plainNumber(std::string_view text);

}  // namespace kestrow::service
