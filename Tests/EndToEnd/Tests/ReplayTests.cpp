#include "Tests/EndToEnd/ReplayCheck.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

namespace kestrow {
namespace {

// Each of our match files, from a minute of play at a time to a whole innings between two polls.
class Replay : public testing::TestWithParam<std::tuple<const char*, double>> {};

TEST_P(Replay, ShowsWhatTheFileSays) {
  const auto& [name, speed] = GetParam();
  const auto report = checkReplay(
      std::filesystem::path(KESTROW_FIXTURES) / "cricsheet" / (std::string(name) + ".json"), speed);
  EXPECT_EQ(report.mistakes, std::vector<std::string>{});
  EXPECT_EQ(report.alertsShown, report.alertsDue);
  EXPECT_EQ(report.logLines, report.expectedFours + report.expectedSixes + report.expectedWickets);
  if (speed == 1) {
    EXPECT_EQ(report.shownFours, report.expectedFours);
    EXPECT_EQ(report.shownSixes, report.expectedSixes);
    EXPECT_EQ(report.shownWickets, report.expectedWickets);
  }
}

INSTANTIATE_TEST_SUITE_P(OurMatches, Replay,
                         testing::Combine(testing::Values("won-by-wickets", "tie-super-over",
                                                          "no-result", "dls", "odd-balls",
                                                          "without-a-ball"),
                                          testing::Values(1.0, 5.0, 40.0)),
                         [](const testing::TestParamInfo<Replay::ParamType>& parameters) {
                           std::string name =
                               std::string(std::get<0>(parameters.param)) + "_at_" +
                               std::to_string(static_cast<int>(std::get<1>(parameters.param)));
                           for (char& character : name)
                             character = character == '-' ? '_' : character;
                           return name;
                         });

TEST(ReplayCheck, AFasterMatchDropsAlertsButNoLogLine) {
  const auto file = std::filesystem::path(KESTROW_FIXTURES) / "cricsheet" / "won-by-wickets.json";
  const auto report = checkReplay(file, 40);
  EXPECT_LT(report.alertsShown, report.logLines);
  EXPECT_GT(report.alertsShown, 0U);
}

TEST(ReplayCheck, CountsTheFileByItself) {
  const auto folder = std::filesystem::path(KESTROW_FIXTURES) / "cricsheet";
  const auto odd = factsOf(folder / "odd-balls.json");
  ASSERT_TRUE(odd.has_value());
  EXPECT_EQ(odd->scores,
            (std::vector<std::string>{"Harbour City Gulls 57/2", "Inland Kites 40/3"}));
  EXPECT_EQ(odd->result, "Harbour City Gulls won by 17 runs");
  EXPECT_EQ(odd->keyEvents.front(), "four A Alder");
  EXPECT_FALSE(factsOf(folder / "nowhere.json").has_value());
}

}  // namespace
}  // namespace kestrow
