#include "samplers/gpu/gpu_entry.h"

#include <cmath>
#include <string>

#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Utils;

constexpr unsigned long long kMostCardTextBytes = 64;

}  // namespace

void FillEntry(const types::GraphicCardInfo& card,
               contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_GraphicsCardInfo& entry) {
  entry.set_gpus_utilization_percent(card.gpu_utilization_percent);
  entry.set_gpus_clock_mhz(card.gpu_clock_mhz);
  entry.set_memory_bandwidth_gb(card.memory_bandwidth_gb);
  entry.set_memory_clock_mhz(card.memory_clock_mhz);
  entry.set_memory_used_mb(card.memory_used_mb);
  if (!std::isnan(card.memory_controller_utilization_percent)) {
    entry.set_memory_controller_utilization_percent(card.memory_controller_utilization_percent);
  }
  entry.set_performance_capped_reason(Utils::AdjustString(card.status_text, kMostCardTextBytes));
  entry.set_decoder_utilization_percent(card.decoder_utilization_percent);
  entry.set_encoder_utilization_percent(card.encoder_utilization_percent);
  entry.set_video_engine_utilization_percent(card.video_engine_utilization_percent);
  entry.set_bus_id(Utils::AdjustString(std::to_string(card.bus_number)));
  entry.set_temperature_celsius(card.temperature_celsius);
  entry.set_graphics_card_serial_number(Utils::AdjustString(card.serial_number, kMostCardTextBytes));
}

}  // namespace zt::telemetry::collector::performancesamples
