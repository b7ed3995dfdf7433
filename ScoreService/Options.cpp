#include "ScoreService/Options.hpp"

#include "ScoreService/Text.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

namespace kestrow::service {
namespace {

constexpr const char* programName = "kestrow-score-service";
constexpr double maxSpeed = 100000;

constexpr const char* footer = R"(Start points:
  before          ten minutes before the first over
  12.3            after 12 overs and 3 balls of the first innings
  break           the break after the first innings
  chase           the second innings; chase:4.2 begins it after 4 overs and 2 balls
  result          the match has just ended

Faults are KIND[=VALUE][@WHEN][@PATH]; several may be given, each counts the requests of its path:
  latency=SECONDS     the answer comes that much later
  status=CODE         another status, 200 to 599; 204 and 304 come without a body
  drop                the connection closes without an answer
  truncate            the connection closes after half of the body
  garbage             a body that is not JSON
  oversize[=BYTES]    a very long body, one byte over 4 MiB unless told otherwise
  drip=SECONDS        the body comes 16 bytes at a time, that far apart
  redirect=URL        a 302 to this address
WHEN is every:N (each Nth request), first:N, after:N (all but the first N) or rate:P (0 to 1, the
same requests for the same seed); without it every request. PATH is such as /api/pro/match; without
it every path. Example: --fault status=503@every:3@/api/matches

The service ends with SIGTERM or SIGINT.)";

std::string oneLine(std::string text) {
  std::ranges::replace(text, '\n', ' ');
  return text;
}

// What the library can't check by itself, as texts.
struct RawOptions {
  std::string seed = "1";
  std::string speed = "1";
  std::string start;
  std::string now;
  std::vector<std::string> faults;
  std::vector<std::string> replay;
};

void declare(CLI::App& app, Options& options, RawOptions& raw) {
  app.add_option("--address", options.server.address, "Address to listen on")
      ->capture_default_str();
  app.add_option("--port", options.server.port, "Port to listen on; 0 takes any free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_option("--seed", raw.seed, "Decides the simulated league and rated faults")
      ->type_name("NUMBER")
      ->capture_default_str();
  app.add_option("--speed", raw.speed, "Seconds of the match in one second of the clock")
      ->type_name("NUMBER")
      ->capture_default_str();
  app.add_option("--start", raw.start,
                 "Where in the match to begin (default: 8 overs into a simulated match, the first "
                 "ball of a replayed one)")
      ->type_name("POINT");
  app.add_option("--replay", raw.replay, "Play these Cricsheet JSON files instead of a simulation")
      ->type_name("FILE")
      ->expected(1, -1);
  app.add_option("--now", raw.now, "Begin the clock at this date, such as 2026-04-12T14:00:00Z")
      ->type_name("DATE");
  app.add_flag("--frozen", options.isFrozen, "The clock stands still");
  app.add_flag("--sample", options.feed.flags.sample,
               "Mark lists and single matches as sample data");
  app.add_flag("--stale", options.feed.flags.stale, "Mark lists and single matches as out of date");
  app.add_option("--fault", raw.faults, "Commit a fault; may be given more than once")
      ->type_name("FAULT")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.footer(footer);
}

std::expected<void, std::string> setSeed(Options& options, const std::string& text) {
  const auto seed = wholeNumber(text);
  if (!seed || *seed < 0) {
    return std::unexpected("--seed: a whole number from 0 on, not \"" + text + "\"");
  }
  options.server.seed = static_cast<std::uint64_t>(*seed);
  return {};
}

std::expected<void, std::string> setSpeed(Options& options, const std::string& text) {
  const auto speed = plainNumber(text);
  if (!speed || *speed <= 0 || *speed > maxSpeed) {
    return std::unexpected("--speed: a number above 0, up to 100000, not \"" + text + "\"");
  }
  options.feed.speed = *speed;
  return {};
}

std::expected<void, std::string> setNow(Options& options, const std::string& text) {
  if (text.empty()) return {};
  options.now = parseInternetDate(text);
  using namespace std::chrono;
  // Fixtures lie some days to either side, and their years must still have four digits.
  const auto isUsable = [](Date date) {
    return date >= sys_days(year(1) / 1 / 1) && date < sys_days(year(9999) / 1 / 1);
  };
  if (options.now && isUsable(*options.now)) return {};
  return std::unexpected("--now: a date such as 2026-04-12T14:00:00Z, not \"" + text + "\"");
}

std::expected<void, std::string> setStart(Options& options, const std::string& text) {
  const std::string fallback = options.replay.empty() ? "8" : "0";
  const auto start = parseStartPoint(text.empty() ? fallback : text);
  if (!start) return std::unexpected("--start: " + start.error());
  options.feed.start = *start;
  return {};
}

std::expected<void, std::string> setFaults(Options& options, const std::vector<std::string>& all) {
  for (const std::string& text : all) {
    const auto fault = parseFault(text);
    if (!fault) return std::unexpected("--fault: " + fault.error());
    options.server.faults.push_back(*fault);
  }
  return {};
}

std::expected<void, std::string> check(Options& options, const RawOptions& raw) {
  options.replay.assign(raw.replay.begin(), raw.replay.end());
  if (auto done = setSeed(options, raw.seed); !done) return done;
  if (auto done = setSpeed(options, raw.speed); !done) return done;
  if (auto done = setNow(options, raw.now); !done) return done;
  if (auto done = setStart(options, raw.start); !done) return done;
  return setFaults(options, raw.faults);
}

}  // namespace

std::expected<Options, EarlyExit> parseOptions(std::vector<std::string> arguments) {
  CLI::App app("Serves cricket scores: a simulated T20 league, or match files played live.",
               programName);
  Options options;
  RawOptions raw;
  declare(app, options, raw);
  try {
    // The library takes the arguments from the back.
    std::ranges::reverse(arguments);
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp&) {
    return std::unexpected(EarlyExit{0, app.help()});
  } catch (const CLI::Error& error) {
    return std::unexpected(EarlyExit{2, oneLine(programName + std::string(": ") + error.what())});
  }
  if (const auto checked = check(options, raw); !checked) {
    return std::unexpected(
        EarlyExit{2, oneLine(programName + std::string(": ") + checked.error())});
  }
  return options;
}

Now clockOf(const Options& options) {
  if (!options.now && !options.isFrozen) return systemNow;
  const Date begin = options.now.value_or(systemNow());
  if (options.isFrozen) return [begin] { return begin; };
  return [begin, since = std::chrono::steady_clock::now()] {
    return begin +
           std::chrono::duration_cast<Date::duration>(std::chrono::steady_clock::now() - since);
  };
}

std::expected<MatchFeed, std::string> feedOf(const Options& options, Date origin) {
  if (options.replay.empty()) return simulatedFeed(options.server.seed, options.feed, origin);
  return replayFeed(options.replay, options.feed, origin);
}

}  // namespace kestrow::service
