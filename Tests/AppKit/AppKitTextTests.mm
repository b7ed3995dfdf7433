#include "Kestrow/AppKit/AppKitText.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace kestrow::appkit {
namespace {

Size sizeOf(std::string text, TextAttributes attributes = {}) {
  return AppKitTextMeasurer().measure({{std::move(text), std::move(attributes)}});
}

TEST(AppKitTextOnAMac, KerningComesAfterEveryCharacterTheLastToo) {
  const double plain = sizeOf("FOUR").width;
  EXPECT_NEAR(sizeOf("FOUR", {.kerning = 2}).width, plain + 8, 0.01);
}

TEST(AppKitTextOnAMac, DigitsOfEqualWidthTakeAsMuchRoomWhicheverTheyAre) {
  const TextAttributes digits{.font = {.weight = FontWeight::bold, .monospacedDigits = true}};
  EXPECT_NEAR(sizeOf("111", digits).width, sizeOf("888", digits).width, 0.01);
}

TEST(AppKitTextOnAMac, AGlowTakesNoRoom) {
  const TextAttributes glowing{.glow = Glow{.color = {}, .radius = 4}};
  EXPECT_EQ(sizeOf("145/3", glowing), sizeOf("145/3"));
}

TEST(AppKitTextOnAMac, RunsFollowEachOther) {
  const AttributedText runs{{"MI", {}}, {" v ", {}}, {"CSK", {}}};
  EXPECT_NEAR(AppKitTextMeasurer().measure(runs).width, sizeOf("MI v CSK").width, 1);
}

}  // namespace
}  // namespace kestrow::appkit
