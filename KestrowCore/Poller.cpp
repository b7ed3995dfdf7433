#include "KestrowCore/Poller.hpp"

#include <algorithm>
#include <utility>

namespace kestrow {

namespace {

class TaskTimer : public PollTimer {
 public:
  explicit TaskTimer(std::unique_ptr<DelayedAction> wait) : wait_(std::move(wait)) {}
  void cancel() override { wait_.reset(); }

 private:
  std::unique_ptr<DelayedAction> wait_;
};

}  // namespace

std::unique_ptr<PollTimer> TaskPollScheduler::schedule(Seconds after,
                                                       std::function<void()> action) {
  return std::make_unique<TaskTimer>(
      mainThread_.after(std::max(Seconds::zero(), after), std::move(action)));
}

Poller::Poller(Fetch fetch, std::unique_ptr<PollScheduler> scheduler, LocalStore* store)
    : state_(store ? store->followedMatchId() : std::nullopt),
      fetch_(std::move(fetch)),
      scheduler_(std::move(scheduler)),
      store_(store) {}

Poller::Poller(ScoreClient client, MainThread& mainThread, LocalStore& store)
    : Poller([client = std::move(client)] { return client.matches(); },
             std::make_unique<TaskPollScheduler>(mainThread), &store) {}

Poller::~Poller() = default;

void Poller::start() {
  isRunning_ = true;
  isPaused_ = false;
  tasks_.start(pollNow());
}

void Poller::stop() {
  isRunning_ = false;
  dropTimer();
}

void Poller::pause() {
  if (isPaused_) return;
  isPaused_ = true;
  ++generation_;
  dropTimer();
}

void Poller::resume() {
  if (!isPaused_) return;
  isPaused_ = false;
  if (isRunning_) tasks_.start(pollNow());
}

void Poller::follow(const std::optional<std::string>& id) {
  state_.follow(id);
  if (store_) (void)store_->setFollowedMatchId(id);
  if (onChange) onChange(state_);
  if (isRunning_ && !isPaused_) tasks_.start(pollNow());
}

Task<void> Poller::pollNow() {
  if (isPaused_) co_return;
  dropTimer();
  const auto token = generation_;
  auto task = fetch_();
  auto answer = co_await task;
  if (generation_ != token) co_return;
  if (answer) {
    state_.apply(*std::move(answer));
  } else {
    state_.recordFailure();
  }
  if (onChange) onChange(state_);
  scheduleNext();
}

void Poller::scheduleNext() {
  dropTimer();
  const auto interval = state_.pollInterval();
  scheduledInterval_ = interval;
  if (!isRunning_ || isPaused_) return;
  timer_ = scheduler_->schedule(interval, [this] { tasks_.start(pollNow()); });
}

void Poller::dropTimer() {
  if (const auto timer = std::move(timer_)) timer->cancel();
}

}  // namespace kestrow
