// A poller whose answers and waits come when the test says so.
#pragma once

#include "KestrowCore/Poller.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrow {

struct Wait {
  Seconds after{};
  std::function<void()> action;
  bool wasCancelled = false;
  bool wasDropped = false;
};

class RecordedTimer : public PollTimer {
 public:
  explicit RecordedTimer(std::shared_ptr<Wait> wait) : wait_(std::move(wait)) {}
  RecordedTimer(const RecordedTimer&) = delete;
  RecordedTimer& operator=(const RecordedTimer&) = delete;
  ~RecordedTimer() override { wait_->wasDropped = true; }
  void cancel() override { wait_->wasCancelled = true; }

 private:
  std::shared_ptr<Wait> wait_;
};

// Every wait that was set, to end by hand.
struct Waits {
  std::vector<std::shared_ptr<Wait>> all;

  std::vector<Seconds> pending() const {
    std::vector<Seconds> lengths;
    for (const auto& wait : all) {
      if (!wait->wasCancelled && !wait->wasDropped) lengths.push_back(wait->after);
    }
    return lengths;
  }
  void endLast() const {
    const auto action = all.back()->action;
    action();
  }
};

class RecordingScheduler : public PollScheduler {
 public:
  explicit RecordingScheduler(Waits& waits) : waits_(waits) {}
  std::unique_ptr<PollTimer> schedule(Seconds after, std::function<void()> action) override {
    waits_.all.push_back(std::make_shared<Wait>(Wait{.after = after, .action = std::move(action)}));
    return std::make_unique<RecordedTimer>(waits_.all.back());
  }

 private:
  Waits& waits_;
};

class PollerTest : public testing::Test {
 public:
  using Answer = FeedResult<MatchesResponse>;

  void make(LocalStore* store = nullptr) {
    poller.emplace(
        [this] {
          requests.emplace_back();
          return requests.back().task();
        },
        std::make_unique<RecordingScheduler>(waits), store);
    poller->onChange = [this](const FollowState& state) { changes.push_back(state); };
  }

  void SetUp() override { make(); }

  void answer(std::size_t request, Answer with) { requests.at(request).complete(std::move(with)); }

  std::vector<Pending<Answer>> requests;
  Waits waits;
  std::vector<FollowState> changes;
  std::optional<Poller> poller;
};

}  // namespace kestrow
