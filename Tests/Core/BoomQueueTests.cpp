#include "KestrowCore/BoomQueue.hpp"
#include "Tests/Support/Records.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>

namespace kestrow {
namespace {

using namespace std::chrono_literals;
using records::boom;
using records::booms;
using records::date;
using records::ids;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(BoomQueue, StartsEmpty) {
  BoomQueue queue;
  EXPECT_FALSE(queue.lastSeenId);
  EXPECT_TRUE(queue.isEmpty());
  EXPECT_FALSE(queue.currentEndsAt());
  EXPECT_FALSE(queue.boom(date(0)));
}

TEST(BoomQueue, OfABurstTheLastThreeAreShownOneAfterAnotherForFourSeconds) {
  BoomQueue queue;
  EXPECT_EQ(queue.ingest(booms(11, 15)), booms(11, 15));
  EXPECT_THAT(ids(queue.pending), ElementsAre(13, 14, 15));
  EXPECT_EQ(queue.boom(date(0)), boom(13));
  EXPECT_EQ(queue.boom(date(3900)), boom(13));
  EXPECT_EQ(queue.boom(date(4000) - 1us), boom(13));
  EXPECT_EQ(queue.boom(date(4000)), boom(14));
  EXPECT_THAT(ids(queue.pending), ElementsAre(15));
  EXPECT_EQ(queue.boom(date(60'000)), boom(15));
  EXPECT_EQ(queue.boom(date(63'999)), boom(15));
  EXPECT_FALSE(queue.boom(date(64'000)));
  EXPECT_TRUE(queue.isEmpty());
  EXPECT_FALSE(queue.currentStart);
}

TEST(BoomQueue, AnAlertThatShowsIsNotInterrupted) {
  BoomQueue queue;
  queue.ingest({boom(1)});
  EXPECT_EQ(queue.boom(date(0)), boom(1));
  queue.ingest(booms(2, 3));
  EXPECT_EQ(queue.boom(date(1000)), boom(1));
  EXPECT_EQ(queue.currentStart, date(0));
  EXPECT_THAT(ids(queue.pending), ElementsAre(2, 3));
}

TEST(BoomQueue, WhatWaitedLongestGivesWayToNewerOnes) {
  BoomQueue queue;
  queue.ingest(booms(1, 2));
  queue.ingest(booms(3, 4));
  EXPECT_THAT(ids(queue.pending), ElementsAre(2, 3, 4));
  queue.ingest({boom(5)});
  EXPECT_THAT(ids(queue.pending), ElementsAre(3, 4, 5));
}

TEST(BoomQueue, AnAlertKeepsShowingWhenTheClockIsSetBack) {
  BoomQueue queue;
  queue.ingest(booms(1, 2));
  queue.boom(date(10'000));
  EXPECT_EQ(queue.boom(date(5000)), boom(1));
  EXPECT_EQ(queue.boom(date(14'000)), boom(2));
}

TEST(BoomQueue, NothingChangesWhenEveryEventIsOld) {
  BoomQueue queue;
  queue.setBaseline(10);
  const auto before = queue;
  EXPECT_THAT(queue.ingest(booms(8, 10)), IsEmpty());
  EXPECT_THAT(queue.ingest({}), IsEmpty());
  EXPECT_EQ(queue, before);
}

TEST(BoomQueue, TakesOnlyWhatIsAboveTheHighestSeen) {
  BoomQueue queue;
  queue.setBaseline(10);
  EXPECT_THAT(ids(queue.ingest(booms(9, 11))), ElementsAre(11));
  EXPECT_EQ(queue.lastSeenId, 11);
}

TEST(BoomQueue, SortsABatchByIdAndFollowsJumps) {
  BoomQueue queue;
  EXPECT_THAT(ids(queue.ingest({boom(900), boom(-4), boom(7)})), ElementsAre(-4, 7, 900));
  EXPECT_EQ(queue.lastSeenId, 900);
  EXPECT_THAT(ids(queue.pending), ElementsAre(-4, 7, 900));
}

TEST(BoomQueue, TheSmallestIdOfAllIsNeverNew) {
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  BoomQueue queue;
  EXPECT_THAT(ids(queue.ingest({boom(smallest), boom(smallest + 1)})), ElementsAre(smallest + 1));
}

TEST(BoomQueue, OfTwoEventsWithOneIdTheFirstCounts) {
  BoomQueue queue;
  auto second = boom(3, BoomKind::wicket);
  second.batter = "someone else";
  EXPECT_THAT(queue.ingest({boom(4), boom(3, BoomKind::four), second}),
              ElementsAre(boom(3, BoomKind::four), boom(4)));
  EXPECT_THAT(queue.pending, ElementsAre(boom(3, BoomKind::four), boom(4)));
}

TEST(BoomQueue, LateEventsCorrectionsAndUpdatesAreNewButNeverShown) {
  BoomQueue queue;
  auto late = boom(1, BoomKind::four);
  late.late = true;
  const std::vector<BoomEvent> batch{late, boom(2, BoomKind::correction), boom(3, BoomKind::other)};
  EXPECT_EQ(queue.ingest(batch), batch);
  EXPECT_THAT(queue.pending, IsEmpty());
  EXPECT_EQ(queue.lastSeenId, 3);
}

TEST(BoomQueue, FoursSixesAndWicketsAreShown) {
  BoomQueue queue;
  queue.ingest({boom(1, BoomKind::four), boom(2, BoomKind::six), boom(3, BoomKind::wicket)});
  EXPECT_THAT(ids(queue.pending), ElementsAre(1, 2, 3));
}

TEST(BoomQueue, AnnouncedEventsAreCountedAfterTheOthersAreLeftOut) {
  BoomQueue queue;
  queue.ingest(
      {boom(1), boom(2), boom(3), boom(4, BoomKind::other), boom(5, BoomKind::correction)});
  EXPECT_THAT(ids(queue.pending), ElementsAre(1, 2, 3));
}

TEST(BoomQueue, ABaselineEmptiesTheQueueAndMayGoDown) {
  BoomQueue queue;
  queue.ingest(booms(5, 7));
  queue.boom(date(0));
  queue.setBaseline(2);
  EXPECT_EQ(queue, (BoomQueue{.lastSeenId = 2}));
  EXPECT_THAT(ids(queue.ingest(booms(1, 3))), ElementsAre(3));
}

TEST(BoomQueue, ClearingKeepsWhatCountsAsSeen) {
  BoomQueue queue;
  queue.ingest(booms(5, 7));
  queue.boom(date(0));
  queue.clear();
  EXPECT_EQ(queue, (BoomQueue{.lastSeenId = 7}));
}

TEST(BoomQueue, TellsWhenTheShownAlertEnds) {
  BoomQueue queue;
  queue.ingest({boom(1)});
  EXPECT_FALSE(queue.currentEndsAt());
  EXPECT_FALSE(queue.isEmpty());
  queue.boom(date(500));
  EXPECT_EQ(queue.currentEndsAt(), date(4500));
}

TEST(BoomQueue, AnAlertThatHasRunOutCountsUntilTheQueueIsAskedAgain) {
  BoomQueue queue;
  queue.ingest({boom(1)});
  queue.boom(date(0));
  EXPECT_FALSE(queue.isEmpty());
  EXPECT_FALSE(queue.boom(date(9000)));
  EXPECT_TRUE(queue.isEmpty());
}

// Random batches as a service in disorder may send them: repeated, shuffled, old and late.
std::vector<BoomEvent> randomBatch(std::mt19937& random, std::int64_t around) {
  std::vector<BoomEvent> batch(random() % 8);
  for (auto& event : batch) {
    event = boom(around + static_cast<std::int64_t>(random() % 12) - 4,
                 static_cast<BoomKind>(random() % 5));
    event.late = random() % 4 == 0;
  }
  return batch;
}

TEST(BoomQueueProperty, EveryIdIsNewOnceAndShownInOrderAtMostThreeWaiting) {
  std::mt19937 random(20260412);
  for (int round = 0; round < 200; ++round) {
    BoomQueue queue;
    std::vector<std::int64_t> fresh;
    std::vector<BoomEvent> shown;
    std::set<std::int64_t> silent;
    Date now = date(0);
    for (std::int64_t step = 0; step < 40; ++step) {
      const auto taken = queue.ingest(randomBatch(random, step * 3));
      for (const auto& event : taken) {
        fresh.push_back(event.id);
        if (event.late || event.kind > BoomKind::wicket) silent.insert(event.id);
      }
      ASSERT_LE(queue.pending.size(), 3U);
      now += std::chrono::milliseconds(random() % 3000);
      const auto alert = queue.boom(now);
      if (alert && (shown.empty() || shown.back() != *alert)) shown.push_back(*alert);
    }
    const auto shownIds = ids(shown);
    ASSERT_TRUE(std::ranges::is_sorted(fresh, std::ranges::less_equal{}));
    ASSERT_TRUE(std::ranges::is_sorted(shownIds, std::ranges::less_equal{}));
    ASSERT_TRUE(std::ranges::includes(fresh, shownIds));
    for (const auto id : shownIds) ASSERT_FALSE(silent.contains(id));
  }
}

}  // namespace
}  // namespace kestrow
