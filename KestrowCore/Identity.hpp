// What the program is called, in each place that asks for a name.
#pragma once

namespace kestrow::identity {

// For people, and for folders of the program's own.
inline constexpr const char* name = "Kestrow";

// For the system, in reverse-domain form: desktop entries, login items, the bus.
inline constexpr const char* bundleIdentifier = "org.kestrow.Kestrow";

}  // namespace kestrow::identity
