// What a test has to know of the way it was built.
#pragma once

namespace kestrow {

// The allocator is the address sanitizer's, not the system's.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool isAddressSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool isAddressSanitized = true;
#else
inline constexpr bool isAddressSanitized = false;
#endif
#else
inline constexpr bool isAddressSanitized = false;
#endif

}  // namespace kestrow
