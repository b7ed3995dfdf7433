// The program itself: what it says, how it ends.
#include "Tests/Support/Sanitizers.hpp"

#include <gtest/gtest.h>
#include <httplib.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kestrow::service {
namespace {

// A run of the program; killed at the end if it is still there.
class ProgramRun {
 public:
  explicit ProgramRun(std::vector<std::string> arguments) {
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    EXPECT_EQ(pipe(out.data()), 0);
    EXPECT_EQ(pipe(err.data()), 0);
    arguments.insert(arguments.begin(), KESTROW_SCORE_SERVICE);
    std::vector<char*> raw;
    raw.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) raw.push_back(argument.data());
    raw.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
      dup2(out[1], STDOUT_FILENO);
      dup2(err[1], STDERR_FILENO);
      for (const int end : {out[0], out[1], err[0], err[1]}) close(end);
      execv(raw[0], raw.data());
      _exit(127);
    }
    close(out[1]);
    close(err[1]);
    out_ = out[0];
    err_ = err[0];
  }
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;
  ~ProgramRun() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
    close(out_);
    close(err_);
  }

  // One line of the standard output, without its end.
  std::string line() {
    std::string text;
    char character = 0;
    pollfd readable{.fd = out_, .events = POLLIN, .revents = 0};
    while (poll(&readable, 1, 20'000) == 1 && read(out_, &character, 1) == 1 && character != '\n') {
      text += character;
    }
    return text;
  }

  void signal(int number) const { kill(process_, number); }

  // The exit code, once the program has ended; -1 when a signal killed it.
  int code() {
    int status = 0;
    wait4(std::exchange(process_, -1), &status, 0, &usage_);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  // Once it has ended: the processor time that it took, and the most memory that it had, in the
  // system's unit.
  std::chrono::duration<double> processorTime() const {
    const auto time = [](const timeval& value) {
      return std::chrono::seconds(value.tv_sec) + std::chrono::microseconds(value.tv_usec);
    };
    return time(usage_.ru_utime) + time(usage_.ru_stime);
  }
  double mostMemory() const { return static_cast<double>(usage_.ru_maxrss); }

  std::string output() const { return rest(out_); }
  std::string errors() const { return rest(err_); }

 private:
  static std::string rest(int end) {
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t size = 0; (size = read(end, piece.data(), piece.size())) > 0;) {
      text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return text;
  }

  pid_t process_ = -1;
  int out_ = -1;
  int err_ = -1;
  rusage usage_{};
};

const std::string fixtures = KESTROW_FIXTURES "/cricsheet/";
const std::string announcement = "kestrow-score-service: listening on ";

TEST(ScoreServiceProgram, HelpIsTheStandardOutputAndASuccess) {
  ProgramRun run({"--help"});
  EXPECT_NE(run.output().find("--replay"), std::string::npos);
  EXPECT_EQ(run.errors(), "");
  EXPECT_EQ(run.code(), 0);
}

TEST(ScoreServiceProgram, AMistakeIsOneLineOnTheStandardErrorAndAFailure) {
  const std::vector<std::vector<std::string>> mistakes{
      {"--bogus"},
      {"--port", "x"},
      {"--port", "0", "--replay", "/nowhere.json"},
      {"--port", "0", "--replay", fixtures + "dls.json", "/dev/null"},
      {"--port", "0", "--address", "192.0.2.1"},
  };
  for (const auto& arguments : mistakes) {
    ProgramRun run(arguments);
    const std::string errors = run.errors();
    EXPECT_EQ(errors.find("kestrow-score-service: "), 0U) << errors;
    EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    EXPECT_EQ(run.output(), "");
    EXPECT_GT(run.code(), 0);
  }
}

TEST(ScoreServiceProgram, ABusyPortIsAFailure) {
  ProgramRun first({"--port", "0"});
  const std::string url = first.line().substr(announcement.size());
  ProgramRun second({"--port", url.substr(url.rfind(':') + 1)});
  EXPECT_NE(second.errors().find("can't listen on"), std::string::npos);
  EXPECT_EQ(second.code(), 1);
}

TEST(ScoreServiceProgram, SaysWhereItListensServesAndEndsWithEitherSignal) {
  for (const int number : {SIGTERM, SIGINT}) {
    ProgramRun run(
        {"--port", "0", "--replay", fixtures + "tie-super-over.json", "--start", "result"});
    const std::string line = run.line();
    ASSERT_EQ(line.find(announcement + "http://127.0.0.1:"), 0U) << line;
    httplib::Client client(line.substr(announcement.size()));
    const auto result = client.Get("/api/match?id=tie-super-over");
    ASSERT_TRUE(result);
    EXPECT_NE(result->body.find("Match tied (Harbour City Gulls won the Super Over)"),
              std::string::npos);
    run.signal(number);
    EXPECT_EQ(run.code(), 0);
    EXPECT_EQ(run.errors(), "");
  }
}

TEST(ScoreServiceProgram, AtAGivenClockTwoRunsAnswerAlike) {
  const auto answer = [] {
    ProgramRun run({"--port", "0", "--seed", "7", "--now", "2026-04-12T14:00:00Z", "--frozen"});
    httplib::Client client(run.line().substr(announcement.size()));
    return client.Get("/api/matches")->body;
  };
  const std::string first = answer();
  EXPECT_EQ(first, answer());
  EXPECT_NE(first.find(R"("updatedAt":"2026-04-12T14:00:00Z")"), std::string::npos);
}

// Asks for each kind of answer, so many requests in all, and ends the service.
void load(ProgramRun& run, int requests) {
  httplib::Client client(run.line().substr(announcement.size()));
  client.set_keep_alive(true);
  for (int request = 0; request < requests; ++request) {
    const std::array paths{"/api/matches", "/api/match?id=match-2",
                           "/api/pro/match?id=match-1&since=3"};
    const auto result = client.Get(paths.at(static_cast<std::size_t>(request) % paths.size()));
    ASSERT_TRUE(result && result->status == 200) << request;
  }
  run.signal(SIGTERM);
  EXPECT_EQ(run.code(), 0);
}

TEST(ScoreServiceProgram, AnswersAThousandRequestsInASecondOfOneCoreWithoutGrowing) {
  constexpr int few = 100;
  constexpr int many = 2100;
  ProgramRun first({"--port", "0"});
  load(first, few);
  ProgramRun second({"--port", "0"});
  load(second, many);
  // A tenth is less than half a kilobyte for each request.
  if (!isAddressSanitized) {
    EXPECT_LT(second.mostMemory(), first.mostMemory() * 1.1);
  }
#ifdef NDEBUG
  EXPECT_LT(second.processorTime() - first.processorTime(), std::chrono::milliseconds(many - few));
#endif
}

}  // namespace
}  // namespace kestrow::service
