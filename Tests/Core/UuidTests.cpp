#include "KestrowCore/Uuid.hpp"

#include <gmock/gmock.h>

#include <regex>
#include <set>

namespace kestrow {
namespace {

TEST(Uuid, IsAVersionFourUuid) {
  const std::regex lower("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
  const std::regex upper("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  for (int round = 0; round < 200; ++round) {
    EXPECT_TRUE(std::regex_match(randomUuid(LetterCase::lower), lower));
    EXPECT_TRUE(std::regex_match(randomUuid(LetterCase::upper), upper));
  }
}

TEST(Uuid, EveryDigitComesAndNoneComesTwiceAsAWhole) {
  std::set<std::string> all;
  std::set<char> digits;
  std::set<char> variants;
  for (int round = 0; round < 200; ++round) {
    const auto uuid = randomUuid(LetterCase::lower);
    all.insert(uuid);
    digits.insert(uuid[0]);
    variants.insert(uuid[19]);
  }
  EXPECT_EQ(all.size(), 200U);
  EXPECT_EQ(digits.size(), 16U);
  EXPECT_EQ(variants, (std::set<char>{'8', '9', 'a', 'b'}));
}

}  // namespace
}  // namespace kestrow
