#include "samplers/gpu/amd_card_info.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <typeinfo>

#include "samplers/gpu/adlx_pointer.h"
#include "samplers/gpu/pci_bus_number.h"
#include "types/conversions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using types::GraphicCardInfo;
using namespace adlx;
using Services = IADLXPerformanceMonitoringServices;
using Support = IADLXGPUMetricsSupport;
using Metrics = IADLXGPUMetrics;

constexpr char kNoServices[] = "Error while getting ADLX performance monitoring services";
// Misspelt for good: hosts look for this text.
constexpr char kNoCards[] = "Error while getting availables amd gpus";

Error Failure(ADLX_RESULT result, const char* description) {
  return {Error::kCallFailed, result, description, typeid(ADLX_RESULT).name(), ""};
}

// A card's figures, and which of them it has. Either may be missing.
struct Figures {
  Figures(Services& services, IADLXGPU& gpu) {
    Obtain(support, [&](Support** out) { return services.GetSupportedGPUMetrics(&gpu, out); });
    Obtain(metrics, [&](Metrics** out) { return services.GetCurrentGPUMetrics(&gpu, out); });
  }

  // 0 for a figure that the card does not have.
  template <typename Number>
  Number Read(ADLX_RESULT (Support::*is_supported)(bool*), ADLX_RESULT (Metrics::*read)(Number*)) const {
    bool supported = false;
    Number number = 0;
    if (support != nullptr) (support.get()->*is_supported)(&supported);
    if (supported && metrics != nullptr) (metrics.get()->*read)(&number);
    return number;
  }

  AdlxPointer<Support> support;
  AdlxPointer<Metrics> metrics;
};

// Empty when the card does not tell.
std::string ReadText(IADLXGPU& gpu, ADLX_RESULT (IADLXGPU::*read)(const char**)) {
  const char* text = nullptr;
  return Succeeded((gpu.*read)(&text)) && text != nullptr ? text : "";
}

// Not guarded: a card that tells of no memory has no such share (NaN), or an infinite one.
float MemoryInUsePercent(IADLXGPU& gpu, float memory_used_mb) {
  std::uint32_t total_mb = 0;
  gpu.TotalVRAM(&total_mb);
  return memory_used_mb / static_cast<float>(total_mb) * 100.0F;
}

GraphicCardInfo ReadCard(Services& services, IADLXGPU& gpu) {
  const Figures figures(services, gpu);
  GraphicCardInfo card;
  // ADLX knows no serial number: the device identifier takes its place.
  card.serial_number = ReadText(gpu, &IADLXGPU::DeviceId);
  card.gpu_utilization_percent = static_cast<float>(figures.Read(&Support::IsSupportedGPUUsage, &Metrics::GPUUsage));
  card.gpu_clock_mhz = static_cast<float>(figures.Read(&Support::IsSupportedGPUClockSpeed, &Metrics::GPUClockSpeed));
  card.memory_clock_mhz =
      static_cast<float>(figures.Read(&Support::IsSupportedGPUVRAMClockSpeed, &Metrics::GPUVRAMClockSpeed));
  card.temperature_celsius =
      TruncateToUint32(figures.Read(&Support::IsSupportedGPUTemperature, &Metrics::GPUTemperature));
  card.memory_used_mb = static_cast<float>(figures.Read(&Support::IsSupportedGPUVRAM, &Metrics::GPUVRAM));
  card.memory_controller_utilization_percent = MemoryInUsePercent(gpu, card.memory_used_mb);
  card.bus_number = PciBusNumber(ReadText(gpu, &IADLXGPU::VendorId), card.serial_number);
  return card;
}

}  // namespace

AmdCardInfo::AmdCardInfo() = default;
AmdCardInfo::~AmdCardInfo() = default;

Error AmdCardInfo::QueryValues(std::vector<GraphicCardInfo>* cards) {
  const Error started = adlx_.Start();
  if (started.Failed()) return started;
  IADLXSystem& system = *adlx_.System();

  AdlxPointer<Services> services;
  ADLX_RESULT result = Obtain(services, [&](Services** out) { return system.GetPerformanceMonitoringServices(out); });
  if (!Succeeded(result)) return Failure(result, kNoServices);
  AdlxPointer<IADLXGPUList> gpus;
  result = Obtain(gpus, [&](IADLXGPUList** out) { return system.GetGPUs(out); });
  if (!Succeeded(result)) return Failure(result, kNoCards);

  const std::uint32_t begin = gpus->Begin();
  const std::uint32_t end = gpus->End();
  const std::uint32_t count = begin < end ? std::min<std::uint32_t>(end - begin, kMostCardsOfVendor) : 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    AdlxPointer<IADLXGPU> gpu;
    result = Obtain(gpu, [&](IADLXGPU** out) { return gpus->At_GPUList(begin + i, out); });
    if (Succeeded(result)) cards->push_back(ReadCard(*services, *gpu));
  }
  return {};
}

}  // namespace zt::telemetry::collector::performancesamples
