// Asynchronous work as coroutines that run on one thread.
//
// A Task<T> is a coroutine that starts when it is awaited and gives one T. A TaskScope starts tasks
// that nobody awaits and owns them: destroying the scope ends the ones still suspended, and with
// them whatever they wait for. A Pending<T> is the other end of an awaited answer: whoever holds it
// completes it once.
//
// Nothing here locks. Tasks are started, completed and destroyed on the main thread only.
// Failures are values (std::expected); an exception that leaves a task ends the program.
//
// Name what you await (`auto task = fetch(); auto answer = co_await std::move(task);`): GCC 12
// destroys temporaries of a co_await expression twice in some positions.
#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>

namespace kestrow {

template <class T = void>
class Task;

namespace task_detail {

struct PromiseBase {
  std::coroutine_handle<> continuation = std::noop_coroutine();

  struct ResumeContinuation {
    bool await_ready() const noexcept { return false; }
    template <class P>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<P> ended) const noexcept {
      return ended.promise().continuation;
    }
    void await_resume() const noexcept {}
  };

  std::suspend_always initial_suspend() const noexcept { return {}; }
  ResumeContinuation final_suspend() const noexcept { return {}; }
  [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
};

template <class T>
struct Promise : PromiseBase {
  std::optional<T> value;

  Task<T> get_return_object();
  template <class U>
  void return_value(U&& result) {
    value.emplace(std::forward<U>(result));
  }
  T take() { return std::move(*value); }
};

template <>
struct Promise<void> : PromiseBase {
  Task<void> get_return_object();
  void return_void() const noexcept {}
  void take() const noexcept {}
};

}  // namespace task_detail

// A coroutine that gives one T. Awaited at most once; destroying it before it has ended ends it.
template <class T>
class [[nodiscard]] Task {
 public:
  using promise_type = task_detail::Promise<T>;

  explicit Task(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() {
    if (handle_) handle_.destroy();
  }

  bool await_ready() const noexcept { return false; }
  std::coroutine_handle<> await_suspend(std::coroutine_handle<> awaiting) noexcept {
    handle_.promise().continuation = awaiting;
    return handle_;
  }
  T await_resume() { return handle_.promise().take(); }

 private:
  std::coroutine_handle<promise_type> handle_;
};

template <class T>
Task<T> task_detail::Promise<T>::get_return_object() {
  return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}

inline Task<void> task_detail::Promise<void>::get_return_object() {
  return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

// Owns tasks that run on their own. A member of the object that the tasks work for, declared last,
// so that it is the first to go. Must not be destroyed from inside one of its own tasks.
class TaskScope {
 public:
  TaskScope() = default;
  TaskScope(const TaskScope&) = delete;
  TaskScope& operator=(const TaskScope&) = delete;
  ~TaskScope() {
    while (!running_.empty()) {
      const auto handle = running_.front();
      running_.pop_front();
      handle.destroy();
    }
  }

  // Runs the task up to its first suspension, then returns.
  void start(Task<void> task) {
    const Root root = run(std::move(task), this);
    running_.push_front(root.handle);
    root.handle.promise().place = running_.begin();
    root.handle.resume();
  }

  // True when every task has ended.
  bool isIdle() const { return running_.empty(); }

 private:
  struct Root {
    struct promise_type;
    std::coroutine_handle<promise_type> handle;

    struct promise_type {
      TaskScope* scope;
      std::list<std::coroutine_handle<promise_type>>::iterator place;

      promise_type(Task<void>& /*task*/, TaskScope* owner) : scope(owner) {}
      Root get_return_object() {
        return Root{std::coroutine_handle<promise_type>::from_promise(*this)};
      }
      struct Leave {
        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<promise_type> ended) const noexcept {
          ended.promise().scope->running_.erase(ended.promise().place);
          ended.destroy();
        }
        void await_resume() const noexcept {}
      };
      std::suspend_always initial_suspend() const noexcept { return {}; }
      Leave final_suspend() const noexcept { return {}; }
      void return_void() const noexcept {}
      [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
    };
  };

  static Root run(Task<void> task, TaskScope* /*owner*/) { co_await task; }

  std::list<std::coroutine_handle<Root::promise_type>> running_;
};

// The producing end of one answer. Copies share the answer. The consuming end is one task() that is
// awaited once; when that task goes before the answer has come, `onAbandoned` is called (once), and
// a later complete() does nothing.
template <class T>
class Pending {
 public:
  Pending() : state_(std::make_shared<State>()) {}

  // Gives the answer and resumes the waiting task before it returns. Only the first call counts.
  void complete(T value) const {
    const auto state = state_;
    if (state->value || state->isAbandoned) return;
    state->value.emplace(std::move(value));
    state->onAbandoned = nullptr;
    if (const auto waiting = std::exchange(state->waiting, nullptr)) waiting.resume();
  }

  void onAbandoned(std::function<void()> action) const { state_->onAbandoned = std::move(action); }

  // The task that waits for the answer.
  Task<T> task() const { return wait(Waiter(state_)); }

 private:
  struct State {
    std::optional<T> value;
    std::coroutine_handle<> waiting = nullptr;
    std::function<void()> onAbandoned;
    bool isAbandoned = false;
  };

  // Lives in the waiting coroutine's frame: when the frame goes early, the answer is abandoned.
  class Waiter {
   public:
    explicit Waiter(std::shared_ptr<State> state) : state_(std::move(state)) {}
    Waiter(Waiter&& other) noexcept = default;
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;
    Waiter& operator=(Waiter&&) = delete;
    ~Waiter() {
      if (!state_ || state_->value) return;
      state_->isAbandoned = true;
      state_->waiting = nullptr;
      if (const auto action = std::exchange(state_->onAbandoned, nullptr)) action();
    }

    bool await_ready() const noexcept { return state_->value.has_value(); }
    void await_suspend(std::coroutine_handle<> awaiting) noexcept { state_->waiting = awaiting; }
    T await_resume() { return std::move(*state_->value); }

   private:
    std::shared_ptr<State> state_;
  };

  static Task<T> wait(Waiter waiter) {
    T value = co_await waiter;
    co_return value;
  }

  std::shared_ptr<State> state_;
};

}  // namespace kestrow
