// Shortening and truncation of texts that users see. The input is a status, the names of two teams
// and their short names, separated by the byte FF.
#include "Fuzzers/Fuzzer.hpp"
#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/ScoreText.hpp"
#include "KestrowCore/Text.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace text = kestrow::text;
using kestrow::PillContent;
using kestrow::fuzz::require;

constexpr std::string_view ellipsis = "…";

std::array<std::string_view, 5> partsOf(std::string_view input) {
  std::array<std::string_view, 5> parts;
  for (std::string_view& part : parts) {
    const std::size_t end = input.find('\xff');
    part = input.substr(0, end);
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  }
  return parts;
}

void checkCharacters(std::string_view input) {
  const std::vector<std::string_view> characters = text::characters(input);
  std::string joined;
  for (const std::string_view character : characters) joined += character;
  require(joined == input, "the characters are the text");
  for (const std::size_t count :
       {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{26}}) {
    joined.clear();
    for (const std::string_view character : characters | std::views::take(count)) {
      joined += character;
    }
    require(text::prefix(input, count) == joined, "a start holds so many characters");
  }
}

void checkWhiteSpace(std::string_view input) {
  for (const auto which : {text::WhiteSpace::spacesAndTabs, text::WhiteSpace::withLineBreaks}) {
    const std::string_view trimmed = text::trimmed(input, which);
    require(text::trimmed(trimmed, which) == trimmed, "trimming twice changes nothing");
    require(input.find(trimmed) != std::string_view::npos, "trimming takes from the ends");
  }
}

void checkUnicode(std::string_view input) {
  const std::string valid = text::validated(input);
  require(text::validated(valid) == valid, "a validated text is valid");
  for (const std::string& cased : {text::upperCased(input), text::lowerCased(input)}) {
    require(text::validated(cased) == cased, "changing the case keeps a text valid");
  }
}

// What a surface or assistive technology is handed.
void checkReading(std::string_view input) {
  for (const std::size_t bytes :
       {std::size_t{0}, std::size_t{1}, std::size_t{7}, std::size_t{100}}) {
    const std::string_view start = text::firstBytes(input, bytes);
    require(start.size() <= bytes && input.starts_with(start), "a start of so many bytes");
  }
  const std::string line = text::onOneLine(input);
  require(line.find_first_of("\t\n\v\f\r") == std::string::npos, "one line");
  const std::string valid = text::validated(input);
  for (const std::string& shown : {text::onOneLine(valid), text::readable(valid)}) {
    require(text::validated(shown) == shown, "a valid text stays valid");
  }
  const std::string read = text::readable(valid);
  require(read.size() <= text::longestRead + ellipsis.size(), "nobody reads on");
  require(!read.contains('\0'), "a NUL ends no text");
}

void checkShortening(std::string_view status, const kestrow::Match& match) {
  const std::string result = kestrow::result_text::shortened(status, match);
  require(text::characters(result).size() <= kestrow::result_text::maxLength,
          "a result has at most 26 characters");
  const auto isValid = [](std::string_view given) { return text::validated(given) == given; };
  const std::array given{
      status, std::string_view(match.team1.name), std::string_view(match.team1.shortName),
      std::string_view(match.team2.name), std::string_view(match.team2.shortName)};
  require(isValid(result) || !std::ranges::all_of(given, isValid),
          "a result is cut between characters");
}

void checkTruncation(std::string_view input) {
  using Measure = std::function<double(std::string_view)>;
  const Measure inCodePoints = [](std::string_view part) {
    return 7.0 * static_cast<double>(
                     std::ranges::count_if(part, [](char c) { return (c & 0xC0) != 0x80; }));
  };
  const Measure inBytes = [](std::string_view part) { return static_cast<double>(part.size()); };
  for (const Measure& measure : {inCodePoints, inBytes}) {
    for (const double width : {0.0, 30.0, 190.0}) {
      const std::string cut = PillContent::truncate(input, width, measure);
      require(measure(cut) <= width || cut.empty(), "a truncated text fits");
      if (cut == input || cut.empty()) continue;
      require(cut.ends_with(ellipsis), "a text that lost something says so");
      const auto kept = std::string_view(cut).substr(0, cut.size() - ellipsis.size());
      require(input.starts_with(kept), "what is kept is the text's start");
      require(!kept.ends_with(' '), "no space before the dots");
      require(text::validated(input) != input || text::validated(kept) == kept,
              "a text is cut between characters");
    }
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [status, name1, name2, short1, short2] = partsOf(kestrow::fuzz::textOf(data, size));
  checkCharacters(status);
  checkWhiteSpace(status);
  checkUnicode(status);
  checkReading(status);
  checkTruncation(status);
  kestrow::Match match;
  match.team1 = {.name = std::string(name1), .shortName = std::string(short1)};
  match.team2 = {.name = std::string(name2), .shortName = std::string(short2)};
  checkShortening(status, match);
  return 0;
}
