#include "ScoreService/Text.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace kestrow::service {
namespace {

TEST(ServiceText, AWholeNumberIsTheWholeTextAndFits) {
  EXPECT_EQ(wholeNumber("0"), 0);
  EXPECT_EQ(wholeNumber("-3"), -3);
  EXPECT_EQ(wholeNumber("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  for (const char* text : {"", " 1", "1 ", "+1", "1.0", "0x1", "9223372036854775808", "-", "a"}) {
    EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
  }
}

TEST(ServiceText, APlainNumberHasDigitsAndAtMostOneDot) {
  EXPECT_EQ(plainNumber("2"), 2.0);
  EXPECT_EQ(plainNumber("2.5"), 2.5);
  EXPECT_EQ(plainNumber("0.05"), 0.05);
  for (const char* text :
       {"", ".", "1.", ".5", "-1", "1e3", "nan", "inf", "1.2.3", "1 ", "1234567890123"}) {
    EXPECT_EQ(plainNumber(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace kestrow::service
