#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

namespace zt::telemetry::host {

/// A simulated laptop over weeks: its battery ages, its drive fills, its user works by day and is away at night, and
/// once a week it is restarted, which takes two hours.
class MachineLife {
 public:
  virtual ~MachineLife() = default;

  /// Makes the laptop as it is at `utc` the machine that is sampled; false when it is off. Called with each hour in
  /// turn.
  virtual bool GoOn(std::chrono::sys_seconds utc) = 0;
};

/// A life that begins at `begin` (UTC); the same numbers give the same life. Throws `Failure` with wrong usage in a
/// build that has no simulated machines.
std::unique_ptr<MachineLife> NewMachineLife(std::chrono::sys_seconds begin, std::uint64_t random_seed);

}  // namespace zt::telemetry::host
