#include "Kestrow/PanelReuse.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrow {
namespace {

using Keys = std::vector<PanelNodeKey>;
using Places = std::vector<std::optional<std::size_t>>;

TEST(PanelReuse, KeyIsTheKindAndTheId) {
  const std::vector<PanelNode> nodes{{.id = "a", .kind = PanelHeader{"Title"}},
                                     {.id = "a", .kind = PanelButton{"Quit"}},
                                     {.id = "b", .kind = PanelButton{"Retry"}}};
  const auto keys = keysOf(nodes);
  ASSERT_EQ(keys.size(), 3U);
  EXPECT_NE(keys[0], keys[1]);
  EXPECT_EQ(keys[1].kind, keys[2].kind);
  EXPECT_EQ(keys[2].id, "b");
}

TEST(PanelReuse, KeyIsTheSameWhateverANodeShows) {
  const std::vector<PanelNode> off{{.id = "hide", .kind = PanelCheckBox{.title = "Hide"}}};
  const std::vector<PanelNode> on{
      {.id = "hide", .kind = PanelCheckBox{.title = "Hide pill", .isOn = true}}};
  EXPECT_EQ(keysOf(off), keysOf(on));
}

TEST(PanelReuse, GivesEachKeyThePlaceThatItHad) {
  const Keys before{{1, "a"}, {2, "b"}, {3, "c"}};
  const Keys after{{3, "c"}, {1, "a"}};
  EXPECT_EQ(reusedPlaces(before, after), (Places{2, 0}));
}

TEST(PanelReuse, GivesNothingForWhatIsNew) {
  EXPECT_EQ(reusedPlaces(Keys{{1, "a"}}, Keys{{1, "b"}, {1, "a"}}), (Places{std::nullopt, 0}));
  EXPECT_EQ(reusedPlaces(Keys{}, Keys{{1, "a"}}), (Places{std::nullopt}));
  EXPECT_EQ(reusedPlaces(Keys{{1, "a"}}, Keys{}), Places{});
}

TEST(PanelReuse, DoesNotTakeAnotherKindForTheSame) {
  EXPECT_EQ(reusedPlaces(Keys{{1, "a"}}, Keys{{2, "a"}}), (Places{std::nullopt}));
}

TEST(PanelReuse, GivesNoPlaceTwice) {
  const Keys before{{1, "a"}, {1, "a"}};
  const Keys after{{1, "a"}, {1, "a"}, {1, "a"}};
  EXPECT_EQ(reusedPlaces(before, after), (Places{0, 1, std::nullopt}));
}

std::size_t kept(const std::vector<std::string>& before, const std::vector<std::string>& after) {
  return keptLines(before, after);
}

TEST(PanelReuse, KeepsTheLinesOfALogFromItsEnd) {
  EXPECT_EQ(kept({"b", "a"}, {"c", "b", "a"}), 2U);
  EXPECT_EQ(kept({"b", "a"}, {"b", "a"}), 2U);
  EXPECT_EQ(kept({"c", "b", "a"}, {"b", "a"}), 2U);
  EXPECT_EQ(kept({"c", "x", "a"}, {"c", "y", "a"}), 1U);
  EXPECT_EQ(kept({"b", "a"}, {"b", "z"}), 0U);
  EXPECT_EQ(kept({}, {"a"}), 0U);
  EXPECT_EQ(kept({"a"}, {}), 0U);
}

}  // namespace
}  // namespace kestrow
