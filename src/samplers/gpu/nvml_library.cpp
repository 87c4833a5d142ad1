#include "samplers/gpu/nvml_library.h"

#include <optional>
#include <type_traits>
#include <utility>

#include "platform/library.h"
#include "platform/nvml_files.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using platform::Library;

enum class Need { kIndispensable, kOptional };

// The list of functions: `visit` gets each one's place, its exported name, and whether anything works without it.
template <typename Visit>
void ForEachFunction(NvmlFunctions& functions, Visit visit) {
  visit(functions.init, "nvmlInit_v2", Need::kIndispensable);
  visit(functions.shutdown, "nvmlShutdown", Need::kIndispensable);
  visit(functions.device_count, "nvmlDeviceGetCount_v2", Need::kIndispensable);
  visit(functions.handle_by_index, "nvmlDeviceGetHandleByIndex_v2", Need::kIndispensable);
  visit(functions.serial, "nvmlDeviceGetSerial", Need::kOptional);
  visit(functions.pci_info, "nvmlDeviceGetPciInfo_v3", Need::kOptional);
  visit(functions.throttle_reasons, "nvmlDeviceGetCurrentClocksThrottleReasons", Need::kOptional);
  visit(functions.temperature, "nvmlDeviceGetTemperature", Need::kOptional);
  visit(functions.clock, "nvmlDeviceGetClock", Need::kOptional);
  visit(functions.memory_bus_width, "nvmlDeviceGetMemoryBusWidth", Need::kOptional);
  visit(functions.memory_info, "nvmlDeviceGetMemoryInfo", Need::kOptional);
  visit(functions.utilization_rates, "nvmlDeviceGetUtilizationRates", Need::kOptional);
  visit(functions.encoder_utilization, "nvmlDeviceGetEncoderUtilization", Need::kOptional);
  visit(functions.decoder_utilization, "nvmlDeviceGetDecoderUtilization", Need::kOptional);
}

// Absent when an indispensable function is.
std::optional<NvmlFunctions> FindFunctions(const Library& library) {
  NvmlFunctions functions;
  bool is_complete = true;
  ForEachFunction(functions, [&](auto*& function, const char* name, Need need) {
    function = library.Find<std::remove_reference_t<decltype(*function)>>(name);
    if (function == nullptr && need == Need::kIndispensable) is_complete = false;
  });
  return is_complete ? std::optional(functions) : std::nullopt;
}

// A library that is found stays loaded: unloading it with the plugin would run its clean-up inside the loader.
std::optional<NvmlFunctions> FindLibrary() {
  for (const auto& file : platform::NvmlFiles()) {
    Library library = Library::Load(file);
    std::optional<NvmlFunctions> functions = FindFunctions(library);
    if (!functions) continue;
    std::move(library).StayLoaded();
    return functions;
  }
  return std::nullopt;
}

}  // namespace

const NvmlFunctions* BindNvml() {
  static std::optional<NvmlFunctions> functions;
  if (!functions) functions = FindLibrary();
  return functions ? &*functions : nullptr;
}

}  // namespace zt::telemetry::collector::performancesamples
