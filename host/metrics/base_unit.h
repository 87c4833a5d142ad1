#pragma once

#include <optional>
#include <string_view>

namespace zt::telemetry::host {

/// A unit of the contract in the unit that metrics are told in: "mW" is 1/1000 "watts".
struct BaseUnit {
  /// What a metric's name ends with.
  std::string_view name;
  /// A figure times this, divided by the other, is the metric.
  double times = 1;
  double divided_by = 1;
};

/// The base unit of `unit`, as the contract writes it; nothing for a unit that is not known.
std::optional<BaseUnit> BaseUnitOf(std::string_view unit);

}  // namespace zt::telemetry::host
