#include "npu_rules.h"

#include <array>
#include <cstdio>

namespace zt::shared::npu {

bool IsNpu(const AdapterTraits& traits) {
  if (!traits.hardware) return false;
  if (traits.npu) return true;
  const bool is_of_another_kind = traits.gpu || traits.compute_accelerator;
  const bool computes = traits.generic_ml || traits.core_compute;
  return !is_of_another_kind && computes && !traits.graphics;
}

std::string HardwareId(const HardwareParts& parts) {
  if (parts.vendor == 0 && parts.device == 0) return {};
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), R"(PCI\VEN_%04X&DEV_%04X&SUBSYS_%04X%04X&REV_%02X)", parts.vendor,
                parts.device, parts.subsystem, parts.subvendor, parts.revision);
  return text.data();
}

std::optional<std::uint64_t> Reported(std::uint64_t figure) {
  return figure != 0 ? std::optional(figure) : std::nullopt;
}

std::optional<double> CelsiusFromTenths(std::uint32_t tenths) {
  constexpr double kTenthsPerDegree = 10.0;
  return tenths != 0 ? std::optional(tenths / kTenthsPerDegree) : std::nullopt;
}

}  // namespace zt::shared::npu
