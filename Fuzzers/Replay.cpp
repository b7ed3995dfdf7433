// Stands in for libFuzzer where the compiler has none: tries every file of the folders named, then
// the files changed at random, the same way in every run.
//
// usage: fuzz-NAME [-runs=N] FOLDER...
#include "Fuzzers/Fuzzer.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;
using Random = std::minstd_rand;

std::size_t below(std::size_t limit, Random& random) {
  return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

// The files of a folder in the order of their names.
std::vector<std::string> seedsIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    files.push_back(entry.path());
  }
  std::ranges::sort(files);
  std::vector<std::string> seeds;
  for (const auto& file : files) {
    std::ifstream stream(file, std::ios::binary);
    seeds.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  return seeds;
}

// One small change of those that decoders trip over.
void change(std::string& input, const std::string& other, Random& random) {
  constexpr auto bytes = "\0\xff\x80\"\\{}[],:-9eZ\r\n "sv;
  const std::size_t at = below(input.size() + 1, random);
  const std::size_t length = below(16, random) + 1;
  switch (below(6, random)) {
    case 0:
      input.erase(at, length);
      return;
    case 1:
      input.insert(at, 1, bytes[below(bytes.size(), random)]);
      return;
    case 2:
      input.insert(at, input.substr(at, length));
      return;
    case 3:
      input.resize(at);
      return;
    case 4:
      input.replace(at, length, other.substr(std::min(at, other.size()), length));
      return;
    default:
      if (at < input.size()) input[at] = static_cast<char>(input[at] ^ (1 << below(8, random)));
  }
}

void tryOne(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int count, char** arguments) {
  long runs = 0;
  std::vector<std::string> seeds;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    if (argument.starts_with("-runs=")) {
      runs = std::strtol(argument.c_str() + 6, nullptr, 10);
      continue;
    }
    for (std::string& seed : seedsIn(argument)) seeds.push_back(std::move(seed));
  }
  if (seeds.empty()) {
    std::cerr << "no seeds\n";
    return 2;
  }
  for (const std::string& seed : seeds) tryOne(seed);
  Random random(1);
  for (long run = 0; run < runs; ++run) {
    std::string input = seeds[below(seeds.size(), random)];
    const std::string& other = seeds[below(seeds.size(), random)];
    for (std::size_t left = below(4, random) + 1; left > 0; --left) change(input, other, random);
    tryOne(input);
  }
  std::cout << seeds.size() << " seeds and " << runs << " changed ones\n";
  return 0;
}
