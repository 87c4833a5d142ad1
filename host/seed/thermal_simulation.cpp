#include "host/seed/thermal_simulation.h"

#include <algorithm>
#include <cmath>

#include "host/seed/day_pattern.h"
#include "host/seed/rounding.h"

namespace zt::telemetry::host {
namespace {

constexpr double kIdleTemperature = 31;
constexpr double kFullLoadAddsToCpu = 48;
constexpr double kRestlessDegrees = 4;  // how far a minute strays from the pattern of the day
constexpr double kRestlessMemory = 0.8;

constexpr double kSlowestFan = 1800;
constexpr double kFastestFan = 5800;
constexpr double kSpeedPerDegree = 90;
constexpr double kTargetGranularity = 100;
constexpr double kFanInertia = 0.35;  // part of the way to its target that a fan does in a minute
constexpr double kTachometerNoise = 25;

}  // namespace

void ThermalSimulation::Drive(Fan& fan, double temperature) {
  const double noise = random_.Between(-kTachometerNoise, kTachometerNoise);
  fan.running = temperature >= (fan.running ? fan.stops_below : fan.starts_at);
  if (!fan.running) {
    fan = Fan{fan.starts_at, fan.stops_below};
    return;
  }
  const double wanted =
      std::clamp(kSlowestFan + (temperature - fan.stops_below) * kSpeedPerDegree, kSlowestFan, kFastestFan);
  fan.target = Whole(wanted / kTargetGranularity) * static_cast<std::int64_t>(kTargetGranularity);
  const double from = fan.current > 0 ? fan.current : kSlowestFan;
  fan.current = from + (static_cast<double>(fan.target) - from) * kFanInertia + noise;
  fan.step = Whole(static_cast<double>(fan.target) * 100 / kFastestFan);
}

ThermalSample ThermalSimulation::Next(std::chrono::sys_seconds time) {
  const double load = LoadAt(time);
  restlessness_ = restlessness_ * kRestlessMemory + random_.Between(-1, 1) * (1 - kRestlessMemory);
  const double cpu = kIdleTemperature + load * kFullLoadAddsToCpu + restlessness_ * kRestlessDegrees;
  Drive(fan1_, cpu);
  Drive(fan2_, cpu);

  ThermalSample sample;
  sample.time = time;
  sample.cpu_temp = Whole(cpu);
  sample.ext_sensor_temp = Whole(24 + load * 6 + random_.Between(-0.5, 0.5));
  sample.loc_sensor_temp = Whole(29 + load * 12 + random_.Between(-0.8, 0.8));
  sample.fan1_current_tach_speed = Whole(fan1_.current);
  sample.fan1_target_tach_speed = fan1_.target;
  sample.fan1_speed_step = fan1_.step;
  sample.fan2_current_tach_speed = Whole(fan2_.current);
  sample.fan2_target_tach_speed = fan2_.target;
  sample.fan2_speed_step = fan2_.step;
  return sample;
}

}  // namespace zt::telemetry::host
