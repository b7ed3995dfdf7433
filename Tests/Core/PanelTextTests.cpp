#include "KestrowCore/PanelText.hpp"

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace kestrow {
namespace {

std::vector<std::string> shown(std::vector<std::string> lines) {
  return std::get<LogContent::Lines>(PanelLogic::log(std::move(lines)).value).lines;
}

TEST(PanelLogicLog, ShowsTheNewestFirst) {
  EXPECT_EQ(shown({"a"}), (std::vector<std::string>{"a"}));
  EXPECT_EQ(shown({"a", "b", "c"}), (std::vector<std::string>{"c", "b", "a"}));
}

TEST(PanelLogicLog, ShowsLinesAsTheyAre) {
  EXPECT_EQ(shown({" a ", "", "", " a "}), (std::vector<std::string>{" a ", "", "", " a "}));
}

TEST(PanelLogicLog, SaysSoWhenThereIsNothing) {
  EXPECT_EQ(PanelLogic::log({}), LogContent{LogContent::Empty{"No key moments yet"}});
}

TEST(PanelTexts, AreWordedAsThePanelShowsThem) {
  EXPECT_STREQ(PanelText::screenShareNote, "Some capture tools may still show it.");
  EXPECT_STREQ(PanelText::hideNote, "Open Kestrow again to bring the pill back.");
}

}  // namespace
}  // namespace kestrow
