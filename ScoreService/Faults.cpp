#include "ScoreService/Faults.hpp"

#include "ScoreService/Random.hpp"
#include "ScoreService/Text.hpp"

#include <array>
#include <cstddef>
#include <utility>

namespace kestrow::service {
namespace {

constexpr double maxSeconds = 3600;
// One byte more than a client takes.
constexpr std::int64_t defaultOversize = (std::int64_t{4} << 20) + 1;
constexpr std::int64_t maxOversize = std::int64_t{1} << 40;

constexpr std::array<std::pair<std::string_view, Fault::Kind>, 8> kinds{{
    {"latency", Fault::Kind::latency},
    {"status", Fault::Kind::status},
    {"drop", Fault::Kind::drop},
    {"truncate", Fault::Kind::truncate},
    {"garbage", Fault::Kind::garbage},
    {"oversize", Fault::Kind::oversize},
    {"drip", Fault::Kind::drip},
    {"redirect", Fault::Kind::redirect},
}};

constexpr std::array<std::pair<std::string_view, Fault::When>, 4> times{{
    {"every", Fault::When::every},
    {"first", Fault::When::first},
    {"after", Fault::When::after},
    {"rate", Fault::When::rate},
}};

template <class Table>
auto lookUp(const Table& table, std::string_view name) {
  for (const auto& [known, value] : table) {
    if (known == name) return std::optional(value);
  }
  return std::optional<decltype(table[0].second)>();
}

// Splits at the first separator; the second part is absent when there is none.
std::pair<std::string_view, std::optional<std::string_view>> split(std::string_view text,
                                                                   char separator) {
  const auto place = text.find(separator);
  if (place == std::string_view::npos) return {text, std::nullopt};
  return {text.substr(0, place), text.substr(place + 1)};
}

std::unexpected<std::string> wrong(const std::string& why) {
  return std::unexpected(why);
}

std::expected<void, std::string> setSeconds(Fault& fault, std::optional<std::string_view> value) {
  const auto seconds = plainNumber(value.value_or(""));
  if (!seconds || *seconds > maxSeconds) return wrong("takes seconds, 0 to 3600");
  fault.seconds = *seconds;
  return {};
}

std::expected<void, std::string> setValue(Fault& fault, std::optional<std::string_view> value) {
  const auto number = wholeNumber(value.value_or(""));
  switch (fault.kind) {
    case Fault::Kind::latency:
    case Fault::Kind::drip:
      return setSeconds(fault, value);
    case Fault::Kind::status:
      if (!number || *number < 200 || *number > 599) return wrong("takes a status, 200 to 599");
      fault.status = static_cast<int>(*number);
      return {};
    case Fault::Kind::oversize:
      if (value && (!number || *number < 2 || *number > maxOversize)) {
        return wrong("takes a number of bytes, from 2 on");
      }
      fault.bytes = number.value_or(defaultOversize);
      return {};
    case Fault::Kind::redirect:
      if (!value || value->empty()) return wrong("takes an address to send the client to");
      fault.location = *value;
      return {};
    default:
      if (value) return wrong("takes no value");
      return {};
  }
}

std::expected<void, std::string> setWhen(Fault& fault, std::string_view text) {
  const auto [name, value] = split(text, ':');
  const auto when = lookUp(times, name);
  if (!when)
    return wrong("knows every:N, first:N, after:N and rate:P, not \"" + std::string(text) + "\"");
  fault.when = *when;
  if (*when == Fault::When::rate) {
    const auto rate = plainNumber(value.value_or(""));
    if (!rate || *rate > 1) return wrong("takes a rate from 0 to 1");
    fault.rate = *rate;
    return {};
  }
  const auto count = wholeNumber(value.value_or(""));
  if (!count || *count < 1) return wrong("takes a count from 1 on");
  fault.count = *count;
  return {};
}

bool isDue(const Fault& fault, std::int64_t number, std::uint64_t seed) {
  switch (fault.when) {
    case Fault::When::every:
      return number % fault.count == 0;
    case Fault::When::first:
      return number <= fault.count;
    case Fault::When::after:
      return number > fault.count;
    case Fault::When::rate:
      return Random(mixedSeed(seed, static_cast<std::uint64_t>(number))).chance(fault.rate);
    case Fault::When::always:
      break;
  }
  return true;
}

}  // namespace

std::expected<Fault, std::string> parseFault(std::string_view text) {
  auto [what, rest] = split(text, '@');
  const auto [name, value] = split(what, '=');
  const std::string prefix = "fault " + std::string(name) + " ";
  const auto kind = lookUp(kinds, name);
  if (!kind) return wrong("no fault is called \"" + std::string(name) + "\"");
  Fault fault{.kind = *kind};
  if (const auto done = setValue(fault, value); !done) return wrong(prefix + done.error());
  while (rest) {
    const auto [part, further] = split(*rest, '@');
    rest = further;
    if (part.starts_with('/')) {
      fault.path = part;
    } else if (const auto done = setWhen(fault, part); !done) {
      return wrong(prefix + done.error());
    }
  }
  return fault;
}

FaultPlan::FaultPlan(std::vector<Fault> faults, std::uint64_t seed)
    : faults_(std::move(faults)),
      counts_(std::make_unique<std::atomic<std::int64_t>[]>(faults_.size())),
      seed_(seed) {}

FaultPlan::Choice FaultPlan::next(std::string_view path) {
  Choice choice;
  for (std::size_t i = 0; i < faults_.size(); ++i) {
    const Fault& fault = faults_[i];
    if (!fault.path.empty() && fault.path != path) continue;
    if (!isDue(fault, ++counts_[i], mixedSeed(seed_, i))) continue;
    if (fault.kind == Fault::Kind::latency) {
      choice.latency += Seconds(fault.seconds);
    } else if (!choice.fault) {
      choice.fault = fault;
    }
  }
  return choice;
}

}  // namespace kestrow::service
