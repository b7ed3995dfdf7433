// Paces key events into alerts: one at a time, four seconds each, at most three waiting. A value;
// time comes in as an argument.
#pragma once

#include "KestrowCore/BoomEvent.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow {

struct BoomQueue {
  static constexpr std::chrono::seconds showDuration{4};
  static constexpr std::size_t maxPerBurst = 3;

  std::optional<std::int64_t> lastSeenId;  // the highest id taken; older ones are never announced
  std::optional<BoomEvent> current;        // the alert being shown
  std::optional<Date> currentStart;        // set and cleared together with `current`
  std::vector<BoomEvent> pending;          // oldest first, at most maxPerBurst

  // Everything up to this id counts as seen; nothing is shown or waits.
  void setBaseline(std::int64_t id);

  // Nothing is shown or waits; what counts as seen stays.
  void clear();

  // Takes a batch; gives the events that are new, in rising id order, and queues those that are
  // announced. Of a burst the last three are.
  std::vector<BoomEvent> ingest(std::vector<BoomEvent> batch);

  // The alert to show now; moves on when the shown one has had its time.
  std::optional<BoomEvent> boom(Date now);

  std::optional<Date> currentEndsAt() const;
  bool isEmpty() const;

  bool operator==(const BoomQueue&) const = default;
};

}  // namespace kestrow
