#include "KestrowCore/ProPoller.hpp"
#include "Tests/Core/ProPollerFixture.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace kestrow {
namespace {

using records::boom;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST_F(ProPollerTest, StoresTheNewestSeenIdBesideThoseOfOtherMatches) {
  ASSERT_TRUE(store.update([](StoredState& state) {
    state.installId = "i";
    state.lastEventIdByMatch = {{"a", 1}, {"z", 7}};
  }));
  baseline(3);
  EXPECT_THAT(*store.load().lastEventIdByMatch, UnorderedElementsAre(Pair("a", 3), Pair("z", 7)));
  EXPECT_EQ(store.load().installId, "i");
  poller.startUpdate(following("a"));
  answerLast(payload(3, {boom(5)}));
  EXPECT_EQ(store.load().lastEventIdByMatch->at("a"), 5);
  poller.startUpdate(following("a"));
  answerLast(payload(8, {boom(6)}));
  EXPECT_EQ(store.load().lastEventIdByMatch->at("a"), 8);
}

TEST_F(ProPollerTest, StoresTheNewestSeenIdWhereThereIsNoFile) {
  baseline(3);
  EXPECT_THAT(*store.load().lastEventIdByMatch, ElementsAre(Pair("a", 3)));
}

TEST_F(ProPollerTest, WritesTheFileOnlyWhenTheNewestSeenIdDiffers) {
  baseline(3);
  const auto file = fileIdentity();
  const auto content = fileContent(store.fileUrl());
  poller.startUpdate(following("a"));
  answerLast(payload(3));
  EXPECT_EQ(fileIdentity(), file);
  EXPECT_EQ(fileContent(store.fileUrl()), content);
  poller.startUpdate(following("a"));
  answerLast(payload(4));
  EXPECT_NE(fileIdentity(), file);
}

TEST_F(ProPollerTest, TheStoredIdMayAlsoGoDown) {
  ASSERT_TRUE(store.update([](StoredState& state) { state.lastEventIdByMatch = {{"a", 90}}; }));
  baseline(3);
  EXPECT_EQ(store.load().lastEventIdByMatch->at("a"), 3);
}

TEST_F(ProPollerTest, LeavesAFileThatCannotBeReadAsItIs) {
  writeFile(store.fileUrl(), R"({"followedMatchId": "a", )");
  baseline(3);
  EXPECT_EQ(fileContent(store.fileUrl()), R"({"followedMatchId": "a", )");
  EXPECT_TRUE(poller.hasBaseline());
  EXPECT_EQ(changes, 1);
}

TEST_F(ProPollerTest, AFailedSaveIsIgnored) {
  std::filesystem::create_directory(store.fileUrl());
  baseline(3);
  EXPECT_TRUE(poller.hasBaseline());
  EXPECT_EQ(changes, 1);
}

TEST_F(ProPollerTest, TheAppearanceIsTheStoredOne) {
  EXPECT_EQ(poller.appearance(), PillAppearance());
  const Customisation chosen(std::string(TeamTheme::palette().back().teamId), AlertStyle::subtle);
  ASSERT_TRUE(store.setCustomisation(chosen));
  EXPECT_EQ(poller.appearance(), chosen.appearance());
  EXPECT_NE(poller.appearance(), PillAppearance());
}

}  // namespace
}  // namespace kestrow
