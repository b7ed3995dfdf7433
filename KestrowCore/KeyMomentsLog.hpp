// The key moments of the followed match, one entry for each event id, and their wording.
#pragma once

#include "KestrowCore/BoomEvent.hpp"

#include <string>
#include <vector>

namespace kestrow {

struct KeyMomentsLog {
  std::vector<BoomEvent> entries;  // by rising id, one for each id

  // Takes events in: new ids are added, a changed event replaces its older version. Linear in the
  // log's length when the batch is short.
  void merge(const std::vector<BoomEvent>& events);

  // A line for each entry, oldest first.
  std::vector<std::string> lines() const;

  bool operator==(const KeyMomentsLog&) const = default;
};

namespace key_moment_text {

// "SIX — R Sharma (MI)"
std::string text(const BoomEvent& event);

}  // namespace key_moment_text
}  // namespace kestrow
