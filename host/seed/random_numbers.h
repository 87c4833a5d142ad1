#pragma once

#include <cstdint>
#include <random>

namespace zt::telemetry::host {

/// Random numbers that are the same on every system: the standard library's distributions are not.
class RandomNumbers {
 public:
  explicit RandomNumbers(std::uint64_t seed) : engine_(seed) {}

  std::uint64_t Bits() { return engine_(); }

  /// Evenly spread between `least` and `greatest`.
  double Between(double least, double greatest) {
    constexpr int kUnusedBits = 11;  // a double holds 53 of 64
    constexpr double kScale = 1.0 / 9007199254740992.0;
    return least + (greatest - least) * (static_cast<double>(Bits() >> kUnusedBits) * kScale);
  }

  /// True once in `times` on average.
  bool OnceIn(double times) { return Between(0, times) < 1; }

 private:
  std::mt19937_64 engine_;
};

}  // namespace zt::telemetry::host
