#pragma once

#include <chrono>
#include <cstdint>
#include <iostream>
#include <string>

namespace zt::endurance {

/// Tells on standard error how far a long run is, at each tenth of it.
class Progress {
 public:
  Progress(std::string of_what, std::int64_t all) : of_what_(std::move(of_what)), all_(all) {}

  void Tell(std::int64_t done) const {
    constexpr std::int64_t kParts = 10;
    if (all_ < kParts || done % (all_ / kParts) != 0) return;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_);
    std::cerr << done << " of " << all_ << " " << of_what_ << ", " << seconds.count() << " s\n";
  }

 private:
  std::string of_what_;
  std::int64_t all_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Argument `number` of a program; `otherwise` where it was not given. Throws where it is no number.
inline std::int64_t NumberArgument(int count, char** values, int number, std::int64_t otherwise) {
  return number < count ? std::stoll(values[number]) : otherwise;
}

}  // namespace zt::endurance
