// The choice between 12 and 24 hours, which a user may make apart from the language.
#pragma once

#include "KestrowCore/Text.hpp"

#include <string_view>

namespace kestrow {

// The locale with the hour cycle of a date pattern, in Unicode's letters: "h a" counts to 12, "HH"
// from 0 to 23. As it was where the pattern has no hour, or where the locale has a cycle already.
Locale withHourCycle(Locale locale, std::string_view pattern);

}  // namespace kestrow
