#include "KestrowCore/BoomQueue.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>

namespace kestrow {

namespace {

bool isAnnounced(const BoomEvent& event) {
  if (event.late) return false;
  return event.kind == BoomKind::four || event.kind == BoomKind::six ||
         event.kind == BoomKind::wicket;
}

// Of several events with one id only the first counts.
std::vector<BoomEvent> uniqueByRisingId(std::vector<BoomEvent> batch) {
  std::ranges::stable_sort(batch, {}, &BoomEvent::id);
  const auto repeated = std::ranges::unique(batch, {}, &BoomEvent::id);
  batch.erase(repeated.begin(), repeated.end());
  return batch;
}

}  // namespace

void BoomQueue::setBaseline(std::int64_t id) {
  clear();
  lastSeenId = id;
}

void BoomQueue::clear() {
  current.reset();
  currentStart.reset();
  pending.clear();
}

std::vector<BoomEvent> BoomQueue::ingest(std::vector<BoomEvent> batch) {
  const auto floor = lastSeenId.value_or(std::numeric_limits<std::int64_t>::min());
  auto fresh = uniqueByRisingId(std::move(batch));
  fresh.erase(fresh.begin(), std::ranges::upper_bound(fresh, floor, {}, &BoomEvent::id));
  if (!fresh.empty()) lastSeenId = fresh.back().id;

  // The newest are the ones worth showing: a burst pushes out what waited longest.
  std::ranges::copy_if(fresh, std::back_inserter(pending), isAnnounced);
  if (pending.size() > maxPerBurst) {
    pending.erase(pending.begin(), pending.end() - std::ptrdiff_t{maxPerBurst});
  }
  return fresh;
}

std::optional<BoomEvent> BoomQueue::boom(Date now) {
  if (currentStart && now - *currentStart < showDuration) return current;
  current.reset();
  currentStart.reset();
  if (pending.empty()) return std::nullopt;
  current = std::move(pending.front());
  pending.erase(pending.begin());
  currentStart = now;
  return current;
}

std::optional<Date> BoomQueue::currentEndsAt() const {
  if (!currentStart) return std::nullopt;
  return *currentStart + showDuration;
}

bool BoomQueue::isEmpty() const {
  return !current && pending.empty();
}

}  // namespace kestrow
