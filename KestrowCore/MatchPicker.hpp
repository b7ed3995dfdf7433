// The list of matches that the user can follow.
#pragma once

#include "KestrowCore/Match.hpp"
#include "KestrowCore/PillDisplay.hpp"
#include "KestrowCore/ScoreClient.hpp"
#include "KestrowCore/Task.hpp"

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestrow {

struct PickerRow {
  std::string id;
  std::string teams;        // full names: "Mumbai Indians v Chennai Super Kings"
  std::string competition;  // tournament, else league
  std::string detail;       // score, status or start time
  bool isLive = false;
  bool isFollowed = false;
  bool operator==(const PickerRow&) const = default;
};

struct PickerSection {
  std::string title;
  std::vector<PickerRow> rows;  // never empty
  bool operator==(const PickerSection&) const = default;
};

struct PickerState {
  struct Empty {
    bool isSample = false;
    bool operator==(const Empty&) const = default;
  };
  struct Loaded {
    std::vector<PickerSection> sections;
    bool isSample = false;
    bool operator==(const Loaded&) const = default;
  };
  struct Loading {
    bool operator==(const Loading&) const = default;
  };
  struct Error {
    bool operator==(const Error&) const = default;
  };

  static constexpr const char* loadingText = "Loading matches…";
  static constexpr const char* errorText = "Couldn't load matches";
  static constexpr const char* retryText = "Retry";
  static constexpr const char* emptyText = "No live or upcoming matches";
  static constexpr const char* sampleText = "Sample data";

  std::variant<Empty, Loaded, Loading, Error> value = Loading{};

  // Sections of live and upcoming matches by start time; finished ones are never offered.
  static PickerState build(const MatchesResponse& response,
                           const std::optional<std::string>& followedId,
                           const FormatStart& formatStart);

  bool operator==(const PickerState&) const = default;
};

// Main thread only. Destroying it drops loads in flight.
class MatchPicker {
 public:
  using Fetch = std::function<Task<FeedResult<MatchesResponse>>()>;

  MatchPicker(Fetch fetch, std::optional<std::string> followedId, FormatStart formatStart);
  MatchPicker(ScoreClient client, std::optional<std::string> followedId);
  MatchPicker(const MatchPicker&) = delete;
  MatchPicker& operator=(const MatchPicker&) = delete;

  std::optional<std::string> followedId;  // set by the owner before a load
  std::function<void(const PickerState&)> onChange;

  const PickerState& state() const { return state_; }

  // Fetches the list; every failure becomes the error state. Of overlapping loads the one that ends
  // last decides.
  Task<void> load();

  // The same as a task of the picker's own.
  void startLoad();

 private:
  void set(PickerState state);

  PickerState state_;
  Fetch fetch_;
  FormatStart formatStart_;
  TaskScope tasks_;
};

}  // namespace kestrow
