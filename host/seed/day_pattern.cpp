#include "host/seed/day_pattern.h"

#include <array>

namespace zt::telemetry::host {
namespace {

// At each full hour from midnight on; between two hours the load changes evenly. Quiet nights let the fans stop.
constexpr std::array<double, 24> kLoadAtHour = {0.04, 0.03, 0.02, 0.02, 0.02, 0.03, 0.08, 0.25, 0.50, 0.70, 0.80, 0.75,
                                                0.35, 0.60, 0.85, 0.90, 0.75, 0.50, 0.30, 0.35, 0.40, 0.30, 0.15, 0.06};

}  // namespace

int MinuteOfDay(std::chrono::sys_seconds time) {
  const auto since_midnight = time - std::chrono::floor<std::chrono::days>(time);
  return static_cast<int>(std::chrono::floor<std::chrono::minutes>(since_midnight).count());
}

double LoadAt(std::chrono::sys_seconds time) {
  const int minute = MinuteOfDay(time);
  const auto hour = static_cast<std::size_t>(minute / kMinutesPerHour);
  const double part = static_cast<double>(minute % kMinutesPerHour) / kMinutesPerHour;
  const double next = kLoadAtHour[(hour + 1) % kLoadAtHour.size()];
  return kLoadAtHour[hour] + (next - kLoadAtHour[hour]) * part;
}

}  // namespace zt::telemetry::host
