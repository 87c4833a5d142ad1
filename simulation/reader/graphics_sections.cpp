#include <charconv>
#include <string_view>
#include <system_error>

#include "simulation/reader/sections.h"

namespace zt::simulation::reader {
namespace {

// A number, or a text of its hexadecimal digits after "0x".
void ReadBits(const Value& value, std::uint64_t& bits) {
  if (!value.ToJson().is_string()) {
    Read(value.Or(R"(a text such as "0x24")"), bits);
    return;
  }
  const std::string_view text = value.ToJson().get_ref<const std::string&>();
  const std::string_view digits = text.substr(0, 2) == "0x" ? text.substr(2) : std::string_view{};
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), bits, 16);
  if (error != std::errc{} || end != digits.data() + digits.size()) {
    value.FailExpecting(R"(a number or a text such as "0x24")");
  }
}

void ReadThrottleReasons(const Value& value, Answer<std::uint64_t>& reasons) {
  if (value.IsObjectWith("fails")) {
    Read(value, reasons);
  } else {
    ReadBits(value.Or(R"({"fails": status})"), reasons.emplace<std::uint64_t>());
  }
}

}  // namespace

void Read(const Value& value, NvmlDevice& device) {
  const auto read_throttle_reasons = [&](const Value& reasons) {
    ReadThrottleReasons(reasons, device.throttle_reasons.emplace());
  };
  ReadObject(value, {{"open", ToStatus(device.open)},
                     {"serial", To(device.serial)},
                     {"bus_id", To(device.bus_id)},
                     {"throttle_reasons", read_throttle_reasons},
                     {"temperature_celsius", To(device.temperature_celsius)},
                     {"memory_clock_mhz", To(device.memory_clock_mhz)},
                     {"graphics_clock_mhz", To(device.graphics_clock_mhz)},
                     {"memory_bus_width_bits", To(device.memory_bus_width_bits)},
                     {"memory_total_bytes", To(device.memory_total_bytes)},
                     {"memory_used_bytes", To(device.memory_used_bytes)},
                     {"gpu_percent", To(device.gpu_percent)},
                     {"encoder_percent", To(device.encoder_percent)},
                     {"decoder_percent", To(device.decoder_percent)}});
}

void Read(const Value& value, Nvml& nvml) {
  ReadObject(value, {{"missing_functions", To(nvml.missing_functions)},
                     {"init", ToStatus(nvml.init)},
                     {"count", To(nvml.count)},
                     {"devices", To(nvml.devices)}});
}

void Read(const Value& value, AdlxGpu& gpu) {
  ReadObject(value, {{"open", ToStatus(gpu.open)},
                     {"metrics_support", ToStatus(gpu.metrics_support)},
                     {"support_questions", ToStatus(gpu.support_questions)},
                     {"current_metrics", ToStatus(gpu.current_metrics)},
                     {"vendor_id", To(gpu.vendor_id)},
                     {"device_id", To(gpu.device_id)},
                     {"total_memory_mb", To(gpu.total_memory_mb)},
                     {"usage_percent", To(gpu.usage_percent)},
                     {"temperature_celsius", To(gpu.temperature_celsius)},
                     {"clock_mhz", To(gpu.clock_mhz)},
                     {"memory_clock_mhz", To(gpu.memory_clock_mhz)},
                     {"memory_used_mb", To(gpu.memory_used_mb)}});
}

void Read(const Value& value, Adlx& adlx) {
  ReadObject(value, {{"missing_functions", To(adlx.missing_functions)},
                     {"initialize", ToStatus(adlx.initialize)},
                     {"performance_services", ToStatus(adlx.performance_services)},
                     {"gpu_list", ToStatus(adlx.gpu_list)},
                     {"gpus", To(adlx.gpus)}});
}

}  // namespace zt::simulation::reader
