#include "host/metrics/base_unit.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zt::telemetry::host {
namespace {

constexpr double kKibi = 1024;
constexpr double kMebi = kKibi * kKibi;
constexpr double kGibi = kMebi * kKibi;
constexpr double kKilo = 1e3;
constexpr double kMega = 1e6;
constexpr double kPercents = 100;
constexpr double kMilli = 1e3;
constexpr double kSecondsPerMinute = 60;
constexpr double kBitsPerByte = 8;
constexpr double kJoulesPerWattHour = 3600;

constexpr auto kBaseUnits = std::to_array<std::pair<std::string_view, BaseUnit>>({
    {"%", {"ratio", 1, kPercents}},
    {"times", {"ratio"}},
    {"°C", {"celsius"}},
    {"mW", {"watts", 1, kMilli}},
    {"mWh", {"joules", kJoulesPerWattHour, kMilli}},
    {"mV", {"volts", 1, kMilli}},
    {"mA", {"amperes", 1, kMilli}},
    {"Hz", {"hertz"}},
    {"MHz", {"hertz", kMega}},
    {"bits", {"bytes", 1, kBitsPerByte}},
    {"B", {"bytes"}},
    {"kB", {"bytes", kKilo}},
    {"MB", {"bytes", kMega}},
    {"KiB", {"bytes", kKibi}},
    {"MiB", {"bytes", kMebi}},
    {"GiB", {"bytes", kGibi}},
    {"s", {"seconds"}},
    {"min", {"seconds", kSecondsPerMinute}},
    {"dBm", {"dbm"}},  // a logarithm has no base unit
});

}  // namespace

std::optional<BaseUnit> BaseUnitOf(std::string_view unit) {
  const auto found =
      std::find_if(kBaseUnits.begin(), kBaseUnits.end(), [unit](const auto& known) { return known.first == unit; });
  return found != kBaseUnits.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace zt::telemetry::host
