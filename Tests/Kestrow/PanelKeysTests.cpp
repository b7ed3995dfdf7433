#include "Kestrow/PanelKeys.hpp"

#include <gtest/gtest.h>

namespace kestrow {
namespace {

constexpr KeyModifiers command{.command = true};
constexpr KeyModifiers commandShift{.command = true, .shift = true};

TEST(PanelKeys, CommandWithALetterEdits) {
  EXPECT_EQ(keyEquivalent(command, "x"), EditAction::cut);
  EXPECT_EQ(keyEquivalent(command, "c"), EditAction::copy);
  EXPECT_EQ(keyEquivalent(command, "v"), EditAction::paste);
  EXPECT_EQ(keyEquivalent(command, "a"), EditAction::selectAll);
  EXPECT_EQ(keyEquivalent(command, "z"), EditAction::undo);
}

TEST(PanelKeys, CapitalLettersCountAsSmallOnes) {
  EXPECT_EQ(keyEquivalent(command, "C"), EditAction::copy);
  EXPECT_EQ(keyEquivalent(commandShift, "Z"), EditAction::redo);
}

TEST(PanelKeys, WithShiftOnlyRedoIsThere) {
  EXPECT_EQ(keyEquivalent(commandShift, "z"), EditAction::redo);
  for (const char* key : {"x", "c", "v", "a"}) {
    EXPECT_EQ(keyEquivalent(commandShift, key), std::nullopt);
  }
}

TEST(PanelKeys, AnyOtherModifierIsLeftToTheDesktop) {
  EXPECT_EQ(keyEquivalent({.command = true, .other = true}, "c"), std::nullopt);
  EXPECT_EQ(keyEquivalent({.command = true, .shift = true, .other = true}, "z"), std::nullopt);
}

TEST(PanelKeys, WithoutCommandALetterIsALetter) {
  EXPECT_EQ(keyEquivalent({}, "c"), std::nullopt);
  EXPECT_EQ(keyEquivalent({.shift = true}, "z"), std::nullopt);
}

TEST(PanelKeys, OtherKeysMeanNothing) {
  for (const char* key : {"", "b", "cc", "é"}) {
    EXPECT_EQ(keyEquivalent(command, key), std::nullopt);
  }
}

}  // namespace
}  // namespace kestrow
