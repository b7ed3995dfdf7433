// Random numbers that are the same on every platform for the same seed. The engine's sequence is
// fixed by the language; its distributions are not, so they are written out here.
#pragma once

#include <cstdint>
#include <random>
#include <span>

namespace kestrow::service {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  // A whole number from 0 to count - 1; count must be at least 1.
  std::uint64_t below(std::uint64_t count) { return engine_() % count; }

  // A number from 0 up to, but not including, 1.
  double unit() { return static_cast<double>(engine_() >> 11U) * 0x1.0p-53; }

  bool chance(double probability) { return unit() < probability; }

  // The index of one of the weights, each as likely as it is heavy.
  std::size_t weighted(std::span<const double> weights) {
    double sum = 0;
    for (const double weight : weights) sum += weight;
    double rest = unit() * sum;
    for (std::size_t i = 0; i + 1 < weights.size(); ++i) {
      if (rest < weights[i]) return i;
      rest -= weights[i];
    }
    return weights.size() - 1;
  }

 private:
  std::mt19937_64 engine_;
};

// Mixes a seed with a number, so that neighbouring seeds and numbers give unrelated results.
constexpr std::uint64_t mixedSeed(std::uint64_t seed, std::uint64_t number) {
  std::uint64_t mixed = seed + (number + 1) * 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
  return mixed ^ (mixed >> 31U);
}

}  // namespace kestrow::service
