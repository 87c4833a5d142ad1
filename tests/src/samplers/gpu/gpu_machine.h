#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "simulation/machine.h"

// Machines with graphics cards whose every fact is known.
namespace zt::tests {

using simulation::Adlx;
using simulation::AdlxGpu;
using simulation::Failure;
using simulation::Machine;
using simulation::Nvml;
using simulation::NvmlDevice;
using simulation::WmiRow;

inline constexpr char kPciKey[] = R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI)";

/// An NVIDIA card that answers every question.
inline NvmlDevice FullNvidiaCard(const std::string& serial = "1650000000001") {
  NvmlDevice device;
  device.serial = serial;
  device.bus_id = "00000000:12:00.0";
  device.throttle_reasons = 4U;
  device.temperature_celsius = 71U;
  device.memory_clock_mhz = 9001U;
  device.graphics_clock_mhz = 2505U;
  device.memory_bus_width_bits = 384U;
  device.memory_total_bytes = std::uint64_t{8'000'000'000};
  device.memory_used_bytes = std::uint64_t{2'000'000'000};
  device.gpu_percent = 98U;
  device.encoder_percent = 12U;
  device.decoder_percent = 5U;
  return device;
}

/// An AMD card that has every metric.
inline AdlxGpu FullAmdCard(const std::string& device_id = "744C") {
  AdlxGpu gpu;
  gpu.vendor_id = "1002";
  gpu.device_id = device_id;
  gpu.total_memory_mb = 8192U;
  gpu.usage_percent = 41.5;
  gpu.temperature_celsius = 63.9;
  gpu.clock_mhz = 2304;
  gpu.memory_clock_mhz = 2487;
  gpu.memory_used_mb = 2048;
  return gpu;
}

/// `location`: where the card's adapter is, as the registry has it.
inline void AddAdapter(Machine& machine, const std::string& hardware_id, const std::string& location) {
  if (machine.registry.empty()) machine.registry.push_back({kPciKey, {}, {}});
  machine.registry[0].keys.push_back({hardware_id, {}, {{"4&1&0&0008", {{"LocationInformation", location}}, {}}}});
}

inline void AddIntelGraphics(Machine& machine, const std::string& bios_serial, std::int32_t kelvin) {
  machine.wmi.classes["Win32_VideoController"].push_back(
      WmiRow{{"AdapterCompatibility", std::string("Intel Corporation")},
             {"PNPDeviceID", std::string(R"(PCI\VEN_8086&DEV_A780)")}});
  machine.wmi.classes["Win32_BIOS"] = {WmiRow{{"SerialNumber", bios_serial}}};
  machine.wmi.classes["Win32_PerfFormattedData_Counters_ThermalZoneInformation"] = {
      WmiRow{{"Name", std::string(R"(\_TZ.CPUZ)")}, {"Temperature", kelvin}}};
}

inline Machine WithNvidia(std::vector<NvmlDevice> devices) {
  Machine machine;
  machine.nvml.emplace().devices = std::move(devices);
  return machine;
}

inline Machine WithAmd(std::vector<AdlxGpu> gpus) {
  Machine machine;
  machine.adlx.emplace().gpus = std::move(gpus);
  return machine;
}

}  // namespace zt::tests
