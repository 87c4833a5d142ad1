#pragma once

#include <cstdint>

#include "host/seed/random_numbers.h"
#include "host/seed/samples.h"

namespace zt::telemetry::host {

/// Made-up temperatures and fan speeds of a machine that is busy by day: one sample after the other.
class ThermalSimulation {
 public:
  explicit ThermalSimulation(std::uint64_t random_seed) : random_(random_seed) {}

  /// The sample of `time`, a minute after the one before.
  ThermalSample Next(std::chrono::sys_seconds time);

 private:
  // A fan that starts above one temperature and stops below a lower one.
  struct Fan {
    double starts_at;
    double stops_below;
    bool running = false;
    std::int64_t target = 0;
    double current = 0;
    std::int64_t step = 0;
  };

  void Drive(Fan& fan, double temperature);

  RandomNumbers random_;
  double restlessness_ = 0;
  Fan fan1_{52, 46};
  Fan fan2_{62, 55};
};

}  // namespace zt::telemetry::host
