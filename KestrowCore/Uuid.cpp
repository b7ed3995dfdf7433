#include "KestrowCore/Uuid.hpp"

#include <random>
#include <string_view>

namespace kestrow {

std::string randomUuid(LetterCase letterCase) {
  // '4' is the version; the digit at 'v' has the variant in its upper two bits.
  constexpr std::string_view pattern = "xxxxxxxx-xxxx-4xxx-vxxx-xxxxxxxxxxxx";
  const std::string_view digits =
      letterCase == LetterCase::lower ? "0123456789abcdef" : "0123456789ABCDEF";
  std::random_device random;
  std::string uuid;
  for (const char place : pattern) {
    if (place == 'x') {
      uuid += digits[random() % 16U];
    } else if (place == 'v') {
      uuid += digits[8U + (random() % 4U)];
    } else {
      uuid += place;
    }
  }
  return uuid;
}

}  // namespace kestrow
