#include "ScoreService/Teams.hpp"

#include <gtest/gtest.h>

#include <set>

namespace kestrow::service {
namespace {

TEST(Teams, TheLeagueHasTenSidesWithCodesOfTheirOwn) {
  std::set<std::string> codes;
  for (const Team& team : leagueTeams()) codes.insert(team.shortName);
  EXPECT_EQ(codes, (std::set<std::string>{"MI", "CSK", "RCB", "KKR", "SRH", "RR", "DC", "PBKS",
                                          "GT", "LSG"}));
}

TEST(Teams, KnownTeamsHaveTheirUsualCode) {
  EXPECT_EQ(shortCode("Sunrisers Hyderabad"), "SRH");
  EXPECT_EQ(shortCode("Royal Challengers Bangalore"), "RCB");
  EXPECT_EQ(shortCode("Pune Warriors"), "PWI");
}

TEST(Teams, OtherTeamsGetTheirInitialsOrFirstLetters) {
  EXPECT_EQ(shortCode("Harbour  City kites"), "HCK");
  EXPECT_EQ(shortCode("India"), "IND");
  EXPECT_EQ(shortCode("UK"), "UK");
  EXPECT_EQ(shortCode("Österreich"), "ÖST");
  EXPECT_EQ(shortCode(""), "");
  EXPECT_EQ(shortCode("   "), "");
}

TEST(Teams, TwoTeamsOfOneMatchNeverShareACode) {
  const auto [first, second] = namedTeams("India", "India A");
  EXPECT_EQ(first, (Team{"India", "IND"}));
  EXPECT_EQ(second, (Team{"India A", "IA"}));
  const auto [one, other] = namedTeams("Blue Stars", "Black Sox");
  EXPECT_EQ(one.shortName, "BS");
  EXPECT_EQ(other.shortName, "BS2");
}

}  // namespace
}  // namespace kestrow::service
