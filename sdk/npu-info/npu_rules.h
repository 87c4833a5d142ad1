#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What the figures that Windows gives about an adapter mean.
namespace zt::shared::npu {

/// What DXCore says an adapter is and can do.
struct AdapterTraits {
  bool hardware = false;
  // Kinds of hardware, of which older versions of Windows know none.
  bool npu = false;
  bool gpu = false;
  bool compute_accelerator = false;
  // Direct3D 12 feature sets.
  bool generic_ml = false;
  bool core_compute = false;
  bool graphics = false;
};

/// Where Windows tells no kind of hardware, an NPU is what computes and cannot draw.
bool IsNpu(const AdapterTraits& traits);

/// The parts of a PCI device's name.
struct HardwareParts {
  std::uint32_t vendor = 0;
  std::uint32_t device = 0;
  std::uint32_t subsystem = 0;
  std::uint32_t subvendor = 0;
  std::uint32_t revision = 0;
};

/// The PCI hardware identifier, as "PCI\VEN_8086&DEV_7D1D&SUBSYS_22228086&REV_04": equal for devices of one model.
/// Empty when there are no parts.
std::string HardwareId(const HardwareParts& parts);

/// Drivers give 0 for a figure that they do not report.
std::optional<std::uint64_t> Reported(std::uint64_t figure);

/// `tenths`: tenths of a degree Celsius; 0 is not reported.
std::optional<double> CelsiusFromTenths(std::uint32_t tenths);

}  // namespace zt::shared::npu
