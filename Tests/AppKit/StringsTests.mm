#include "Kestrow/AppKit/Strings.hpp"

#include <gtest/gtest.h>

#include <string>

namespace kestrow::appkit {
namespace {

TEST(Strings, KeepTheirTextBothWays) {
  const std::string text = "Kohli c Müller b Şahin · 200 🏏";
  EXPECT_EQ(toUtf8(toNSString(text)), text);
  EXPECT_EQ(toNSString("…").length, 1U);
}

TEST(Strings, KeepZerosInside) {
  EXPECT_EQ(toNSString(std::string_view("a\0b", 3)).length, 3U);
}

TEST(Strings, PutAMarkForBytesThatAreNoText) {
  EXPECT_EQ(toUtf8(toNSString("a\xFFz")), "a\uFFFDz");
}

TEST(Strings, AreEmptyForNothing) {
  EXPECT_EQ(toUtf8(nil), "");
  EXPECT_EQ(toNSString("").length, 0U);
}

}  // namespace
}  // namespace kestrow::appkit
