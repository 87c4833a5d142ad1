#pragma once

#include <cstdint>
#include <string>

namespace zt::telemetry::collector::performancesamples::types {

/// A graphics card as its vendor's back-end tells it. What the back-end does not know stays 0 or empty.
struct GraphicCardInfo {
  std::string serial_number;              // where there is none: another identifier of the card or the machine
  std::uint32_t bus_number = 0;           // PCI bus
  std::uint32_t temperature_celsius = 0;  // 0: not known
  float gpu_clock_mhz = 0;
  float gpu_utilization_percent = 0;
  float video_engine_utilization_percent = 0;
  float memory_clock_mhz = 0;
  float memory_used_mb = 0;                         // 10^6 bytes
  float memory_controller_utilization_percent = 0;  // share of video memory in use; NaN: not available
  float memory_bandwidth_gb = 0;                    // no bandwidth: NVIDIA's back-end puts the bus width in bits here
  float decoder_utilization_percent = 0;
  float encoder_utilization_percent = 0;
  std::string status_text;  // why clocks are held down
};

}  // namespace zt::telemetry::collector::performancesamples::types
