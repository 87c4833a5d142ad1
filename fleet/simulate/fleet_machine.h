#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "fleet/simulate/live_record.h"
#include "fleet/simulate/machine_facts.h"
#include "host/seed/laptop_hours.h"
#include "host/seed/network_simulation.h"
#include "host/seed/thermal_simulation.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {

/// A machine of a made-up fleet, hour by hour.
class FleetMachine {
 public:
  using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;
  using Take = std::function<void(const Upload& record, const MachineFacts& machine)>;

  FleetMachine(MachineFacts facts, std::chrono::sys_seconds begin);

  const MachineFacts& Facts() const { return facts_; }

  /// Gives `take` what the machine sends in the hour that begins at `utc`: its live record, and the records of the
  /// stored samples of that hour; what it sends late or again comes with those of a later hour. Called with each hour
  /// in turn.
  void Send(std::chrono::sys_seconds utc, const Take& take);

 private:
  bool IsAwake(std::chrono::sys_seconds utc) const;
  void Give(Upload& record, const Take& take);

  MachineFacts facts_;
  std::chrono::sys_seconds begin_;
  host::LaptopHours hours_;
  host::ThermalSimulation thermal_;
  host::NetworkSimulation network_;
  host::RandomNumbers disturbances_;
  LiveState live_;
  Upload record_;              // made again and again
  std::vector<Upload> later_;  // sent with the next hour
};

}  // namespace zt::telemetry::fleet
