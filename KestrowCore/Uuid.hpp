// Random identifiers.
#pragma once

#include <string>

namespace kestrow {

enum class LetterCase { lower, upper };

// A random (version 4) UUID from the system's randomness, as 36 characters of hexadecimal digits
// and hyphens.
std::string randomUuid(LetterCase letterCase);

}  // namespace kestrow
