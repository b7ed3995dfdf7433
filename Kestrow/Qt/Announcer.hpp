// Speaks through assistive technology.
#pragma once

#include <string_view>

namespace kestrow::qt {

// Has the screen reader say the text before anything that waits to be read, on behalf of the
// program. Nothing happens where no accessibility bus is connected. Qt before 6.8 has no way to
// announce, so the signal goes out on Qt's own connection to that bus, from the element by which
// assistive technology knows the program.
void announce(std::string_view text);

}  // namespace kestrow::qt
