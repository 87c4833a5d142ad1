#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zt::shared::npu {

/// Bytes of an NPU's memory: its own or set aside for it, and borrowed from the system.
struct MemoryBytes {
  std::uint64_t dedicated = 0;
  std::uint64_t shared = 0;
};

/// One NPU; nothing where the system does not report the figure.
struct Npu {
  /// UTF-8; empty when the system has no name for the device.
  std::string device_id;
  std::optional<double> temperature_celsius;
  std::optional<std::uint64_t> engine_frequency_hz;
  std::optional<std::uint64_t> memory_frequency_hz;
  std::optional<MemoryBytes> memory_in_use;
  std::optional<MemoryBytes> memory_size;
};

/// The document of `NPUInfo::GetNPUInfoAsJsonString`: empty, not a count of 0, without NPUs. A count of 0 is an error
/// to its readers, which a machine without an NPU would raise in every collection.
std::string ComposeReport(const std::vector<Npu>& npus);

}  // namespace zt::shared::npu
