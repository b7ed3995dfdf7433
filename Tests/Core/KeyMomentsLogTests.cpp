#include "KestrowCore/BoomQueue.hpp"
#include "KestrowCore/KeyMomentsLog.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>

namespace kestrow {
namespace {

using records::boom;
using records::booms;
using testing::ElementsAre;
using testing::IsEmpty;

KeyMomentsLog merged(const std::vector<std::vector<BoomEvent>>& batches) {
  KeyMomentsLog log;
  for (const auto& batch : batches) log.merge(batch);
  return log;
}

TEST(KeyMomentsLog, KeepsEventsByRisingId) {
  EXPECT_EQ(merged({{boom(5), boom(1)}, {boom(3), boom(9)}, {boom(0)}}).entries,
            (std::vector{boom(0), boom(1), boom(3), boom(5), boom(9)}));
}

TEST(KeyMomentsLog, MergingTheSameBatchTwiceChangesNothing) {
  auto log = merged({booms(1, 5)});
  const auto before = log;
  const auto* place = log.entries.data();
  log.merge(booms(1, 5));
  log.merge({});
  log.merge(log.entries);
  EXPECT_EQ(log, before);
  EXPECT_EQ(log.entries.data(), place);
}

TEST(KeyMomentsLog, ARevisedEventReplacesTheOlderVersionInPlace) {
  auto revised = boom(2);
  revised.late = true;
  EXPECT_THAT(merged({booms(1, 3), {revised}}).entries, ElementsAre(boom(1), revised, boom(3)));
}

TEST(KeyMomentsLog, OfSeveralVersionsInOneBatchTheLastCounts) {
  auto second = boom(2);
  second.team = "CSK";
  auto third = boom(2);
  third.batter.reset();
  EXPECT_THAT(merged({{boom(2), second, third}}).entries, ElementsAre(third));
  EXPECT_THAT(merged({booms(1, 3), {second, boom(4), boom(2)}}).entries,
              ElementsAre(boom(1), boom(2), boom(3), boom(4)));
}

TEST(KeyMomentsLog, TakesNewAndRevisedEventsFromOneBatch) {
  auto revised = boom(4);
  revised.team = "CSK";
  EXPECT_THAT(merged({{boom(2), boom(4), boom(6)}, {boom(7), boom(1), revised, boom(5)}}).entries,
              ElementsAre(boom(1), boom(2), revised, boom(5), boom(6), boom(7)));
}

TEST(KeyMomentsLog, ACorrectionStandsBesideTheMomentThatItCorrects) {
  auto correction = boom(3, BoomKind::correction);
  correction.field = "sixes";
  EXPECT_THAT(merged({{boom(2)}, {correction}}).lines(),
              ElementsAre("SIX — R Sharma (MI)", "Correction: six removed — R Sharma (MI)"));
}

TEST(KeyMomentsLog, AnEmptyLogHasNoLines) {
  EXPECT_THAT(KeyMomentsLog().lines(), IsEmpty());
}

BoomEvent worded(BoomKind kind, std::optional<std::string> batter, std::string team,
                 std::optional<std::string> field = std::nullopt) {
  return {.kind = kind,
          .team = std::move(team),
          .batter = std::move(batter),
          .field = std::move(field)};
}

TEST(KeyMomentText, NamesTheKind) {
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::four, {}, "")), "FOUR");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::six, {}, "")), "SIX");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::wicket, {}, "")), "WICKET");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::other, {}, "")), "Update");
}

TEST(KeyMomentText, SaysWhatACorrectionCorrects) {
  const auto line = [](std::optional<std::string> field) {
    return key_moment_text::text(worded(BoomKind::correction, {}, "", std::move(field)));
  };
  EXPECT_EQ(line("fours"), "Correction: four removed");
  EXPECT_EQ(line("sixes"), "Correction: six removed");
  EXPECT_EQ(line("wickets"), "Correction: wicket overturned");
  EXPECT_EQ(line("Fours"), "Correction");
  EXPECT_EQ(line("sixes "), "Correction");
  EXPECT_EQ(line("runs"), "Correction");
  EXPECT_EQ(line(std::nullopt), "Correction");
}

TEST(KeyMomentText, OnlyACorrectionReadsItsField) {
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::other, {}, "", "fours")), "Update");
}

TEST(KeyMomentText, NamesTheTrimmedBatterAndTheTeam) {
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::six, " R Sharma ", "MI")),
            "SIX — R Sharma (MI)");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::wicket, {}, "CSK")), "WICKET (CSK)");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::four, "\t\u00a0V Kohli", "")), "FOUR — V Kohli");
}

TEST(KeyMomentText, ABatterOfOnlySpacesLeavesNoDash) {
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::six, "  ", "MI")), "SIX (MI)");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::six, "", "MI")), "SIX (MI)");
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::six, "\n", "MI")), "SIX (MI)");
}

TEST(KeyMomentText, TheTeamIsNotTrimmed) {
  EXPECT_EQ(key_moment_text::text(worded(BoomKind::six, {}, " ")), "SIX ( )");
}

// Merging one event at a time through a dictionary: slow, and plainly right.
std::vector<BoomEvent> throughADictionary(const std::vector<std::vector<BoomEvent>>& batches) {
  std::map<std::int64_t, BoomEvent> dictionary;
  for (const auto& batch : batches) {
    for (const auto& event : batch) dictionary[event.id] = event;
  }
  std::vector<BoomEvent> entries;
  entries.reserve(dictionary.size());
  for (const auto& [id, event] : dictionary) entries.push_back(event);
  return entries;
}

std::vector<std::vector<BoomEvent>> randomBatches(std::mt19937& random) {
  std::vector<std::vector<BoomEvent>> batches(random() % 8);
  for (auto& batch : batches) {
    batch.resize(random() % 10);
    for (auto& event : batch) {
      event = boom(static_cast<std::int64_t>(random() % 30), static_cast<BoomKind>(random() % 5));
      event.late = random() % 2 == 0;
    }
  }
  return batches;
}

TEST(KeyMomentsLogProperty, MergesLikeADictionaryAndASecondTimeChangesNothing) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    const auto batches = randomBatches(random);
    auto log = merged(batches);
    ASSERT_EQ(log.entries, throughADictionary(batches));
    if (batches.empty()) continue;
    const auto before = log;
    log.merge(batches.back());
    ASSERT_EQ(log, before);
  }
}

TEST(KeyMomentsLogProperty, TheOrderOfBatchesWithDifferentIdsDoesNotMatter) {
  std::mt19937 random(8);
  for (int round = 0; round < 200; ++round) {
    auto events = booms(1, 40);
    std::ranges::shuffle(events, random);
    std::vector<std::vector<BoomEvent>> batches(5);
    for (const auto& event : events) batches[random() % batches.size()].push_back(event);
    ASSERT_EQ(merged(batches).entries, booms(1, 40));
  }
}

TEST(KeyMomentsLogProperty, EveryNewEventOfTheQueueIsInTheLogOnce) {
  std::mt19937 random(9);
  for (int round = 0; round < 200; ++round) {
    BoomQueue queue;
    KeyMomentsLog log;
    std::vector<BoomEvent> fresh;
    for (const auto& batch : randomBatches(random)) {
      const auto taken = queue.ingest(batch);
      fresh.insert(fresh.end(), taken.begin(), taken.end());
      log.merge(taken);
    }
    ASSERT_EQ(log.entries, fresh);
  }
}

}  // namespace
}  // namespace kestrow
