#include "samplers/gpu/nvml_texts.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace zt::telemetry::collector::performancesamples {
namespace {

struct Entry {
  std::uint64_t value;
  const char* text;
};

// Hosts compare these texts: 22 is misspelt for good, and 24 has the text of 23.
constexpr Entry kReturns[] = {
    {0, "The operation was successful"},
    {1, "NVML was not first initialized with nvmlInit()"},
    {2, "A supplied argument is invalid"},
    {3, "The requested operation is not available on target device"},
    {4, "The current user does not have permission for operation"},
    {5, "Deprecated: Multiple initializations are now allowed through ref counting"},
    {6, "A query to find an object was unsuccessful"},
    {7, "An input argument is not large enough"},
    {8, "A device's external power cables are not properly attached"},
    {9, "NVIDIA driver is not loaded"},
    {10, "User provided timeout passed"},
    {11, "NVIDIA Kernel detected an interrupt issue with a GPU"},
    {12, "NVML Shared Library couldn't be found or loaded"},
    {13, "Local version of NVML doesn't implement this function"},
    {14, "infoROM is corrupted"},
    {15, "The GPU has fallen off the bus or has otherwise become inaccessible"},
    {16, "The GPU requires a reset before it can be used again"},
    {17, "The GPU control device has been blocked by the operating system/cgroups"},
    {18, "RM detects a driver/library version mismatch"},
    {19, "An operation cannot be performed because the GPU is currently in use"},
    {20, "Insufficient memory"},
    {21, "No data"},
    {22, "The requested vgpu operation is not available on target device, becasue ECC is enabled"},
    {23, "Ran out of critical resources, other than memory"},
    {24, "Ran out of critical resources, other than memory"},
    {25, "The provided version is invalid/unsupported"},
    {26, "The requested functionality has been deprecated"},
    {27, "The system is not ready for the request"},
    {28, "No GPUs were found"},
    {29, "Resource not in correct state to perform requested operation"},
    {999, "An internal driver error occurred"},
};

// Whole values, no bits: several reasons at once are none of these.
constexpr Entry kThrottleReasons[] = {
    {0, "Clocks are as high as possible"},
    {0x1, "Clocks are dropping because the GPU is in Idle state"},
    {0x2, "Clocks are limited by current setting of applications clocks"},
    {0x4, "Clocks have been optimized to not exceed set power limits"},
    {0x8, "Hardware Slowdown is engaged"},
    {0x10, "This GPU has been added to a Sync boost group"},
    {0x20, "Software Thermal Slowdown"},
    {0x40, "Hardware Thermal Slowdown"},
    {0x80, "Hardware Power Brake Slowdown"},
    {0x100, "GPU clocks are limited by current setting of Display clocks"},
};

template <std::size_t count>
std::string Find(const Entry (&entries)[count], std::uint64_t value) {
  const Entry* const found =
      std::find_if(std::begin(entries), std::end(entries), [&](const Entry& entry) { return entry.value == value; });
  return found != std::end(entries) ? found->text : "";
}

}  // namespace

std::string DescribeNvmlReturn(nvmlReturn_t status) {
  return Find(kReturns, static_cast<std::uint64_t>(status));
}

std::string DescribeThrottleReasons(std::uint64_t reasons) {
  return Find(kThrottleReasons, reasons);
}

}  // namespace zt::telemetry::collector::performancesamples
