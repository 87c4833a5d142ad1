// The stand-in of NVIDIA's management library: answers from the machine's "nvml" facts.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "samplers/gpu/nvml_api.h"
#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/machine.h"
#include "simulation/vendor_record.h"
#include "zt/zt_nvml_export.h"

namespace zt::simulation {

namespace nvml = telemetry::collector::performancesamples::nvml;
using namespace nvml;
using base::FunctionIn;

namespace {

constexpr unsigned int kSamplingPeriodUs = 167'000;

constexpr unsigned int kAbsurdCount = std::numeric_limits<int>::max();
constexpr nvmlReturn_t kUnknownError{999};  // NVML_ERROR_UNKNOWN

const HandedOutThing loaded("loaded nvml.dll");

// Successful starts that were not taken back.
std::uint64_t starts = 0;

nvmlReturn_t ToReturn(std::uint32_t status) {
  return static_cast<nvmlReturn_t>(status);
}

nvmlReturn_t ToReturn(Failure failure) {
  return static_cast<nvmlReturn_t>(failure.status);
}

void Record(const char* function, const std::string& which = {}) {
  CurrentVendorRecord().Note(function, which);
}

// Handles count from 1: the null handle is no card.
nvmlDevice_t ToHandle(std::size_t index) {
  return reinterpret_cast<nvmlDevice_t>(index + 1);  // NOLINT(performance-no-int-to-ptr): opaque to its user
}

// Null for what is no card of the current machine.
const NvmlDevice* FindDevice(nvmlDevice_t handle) {
  const auto& nvml = CurrentMachine().nvml;
  const auto number = reinterpret_cast<std::size_t>(handle);
  return nvml && number >= 1 && number <= nvml->devices.size() ? &nvml->devices[number - 1] : nullptr;
}

template <typename T, typename Target>
nvmlReturn_t Give(const OptionalAnswer<T>& answer, Target& target) {
  if (!answer) return NVML_ERROR_NOT_SUPPORTED;
  if (const auto* failure = std::get_if<Failure>(&*answer)) return ToReturn(*failure);
  target = static_cast<Target>(std::get<T>(*answer));
  return NVML_SUCCESS;
}

// One reading of a card: `read` gets the card's facts, once the call is one that the library accepts. Disturbed it
// fails, or fills the target, one of figures only or a text, with what no card tells.
template <typename Target, typename Read>
nvmlReturn_t Answered(const char* function, nvmlDevice_t handle, Target* target, Read read,
                      const std::string& which = {}) {
  Record(function, which);
  if (starts == 0) return NVML_ERROR_UNINITIALIZED;
  const NvmlDevice* const device = FindDevice(handle);
  if (device == nullptr || target == nullptr) return NVML_ERROR_INVALID_ARGUMENT;
  const Disturbance met = Announce(function + which, {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return kUnknownError;
  if (met == Disturbance::kNone) return read(*device);
  std::memset(target, 0xFF, sizeof *target);
  return NVML_SUCCESS;
}

nvmlReturn_t GiveText(const OptionalAnswer<std::string>& answer, char* target, std::size_t capacity) {
  std::string text;
  const nvmlReturn_t result = Give(answer, text);
  if (result != NVML_SUCCESS) return result;
  if (text.size() >= capacity) return NVML_ERROR_INSUFFICIENT_SIZE;
  std::memcpy(target, text.c_str(), text.size() + 1);
  return NVML_SUCCESS;
}

// The same of a text with room for `capacity` characters, its end included.
nvmlReturn_t AnsweredText(const char* function, nvmlDevice_t handle, OptionalAnswer<std::string> NvmlDevice::*fact,
                          char* target, std::size_t capacity) {
  Record(function);
  if (starts == 0) return NVML_ERROR_UNINITIALIZED;
  const NvmlDevice* const device = FindDevice(handle);
  if (device == nullptr || target == nullptr) return NVML_ERROR_INVALID_ARGUMENT;
  const Disturbance met = Announce(function, {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kEndlessText});
  if (met == Disturbance::kFails) return kUnknownError;
  if (met == Disturbance::kNone) return GiveText(device->*fact, target, capacity);
  std::memset(target, met == Disturbance::kEmpty ? 0 : 'x', capacity);
  return NVML_SUCCESS;
}

nvmlReturn_t GiveUtilization(const char* function, nvmlDevice_t handle, OptionalAnswer<std::uint32_t> NvmlDevice::*fact,
                             unsigned int* percent, unsigned int* sampling_period_us) {
  return Answered(function, handle, percent, [&](const NvmlDevice& device) {
    if (sampling_period_us == nullptr) return NVML_ERROR_INVALID_ARGUMENT;
    const nvmlReturn_t result = Give(device.*fact, *percent);
    if (result == NVML_SUCCESS) *sampling_period_us = kSamplingPeriodUs;
    return result;
  });
}

}  // namespace

extern "C" {

// Each function is of the type by which the collector calls it: one of another type does not compile.
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlInit_v2"> nvmlInit_v2;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlShutdown"> nvmlShutdown;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetCount_v2"> nvmlDeviceGetCount_v2;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetHandleByIndex_v2"> nvmlDeviceGetHandleByIndex_v2;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetSerial"> nvmlDeviceGetSerial;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetPciInfo_v3"> nvmlDeviceGetPciInfo_v3;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetCurrentClocksThrottleReasons">
    nvmlDeviceGetCurrentClocksThrottleReasons;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetTemperature"> nvmlDeviceGetTemperature;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetClock"> nvmlDeviceGetClock;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetMemoryBusWidth"> nvmlDeviceGetMemoryBusWidth;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetMemoryInfo"> nvmlDeviceGetMemoryInfo;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetUtilizationRates"> nvmlDeviceGetUtilizationRates;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetEncoderUtilization"> nvmlDeviceGetEncoderUtilization;
ZT_NVML_EXPORT FunctionIn<nvml::Functions, "nvmlDeviceGetDecoderUtilization"> nvmlDeviceGetDecoderUtilization;

nvmlReturn_t nvmlInit_v2() {
  Record("nvmlInit_v2");
  const auto& nvml = CurrentMachine().nvml;
  if (!nvml) return NVML_ERROR_DRIVER_NOT_LOADED;
  if (Fails("nvmlInit_v2")) return kUnknownError;
  const nvmlReturn_t result = ToReturn(nvml->init);
  if (result != NVML_SUCCESS) return result;
  ++starts;
  ++HandedOut()["NVML start"];
  return result;
}

nvmlReturn_t nvmlShutdown() {
  Record("nvmlShutdown");
  if (starts == 0) return NVML_ERROR_UNINITIALIZED;
  --starts;
  --HandedOut()["NVML start"];
  return Fails("nvmlShutdown") ? kUnknownError : NVML_SUCCESS;
}

nvmlReturn_t nvmlDeviceGetCount_v2(unsigned int* count) {
  Record("nvmlDeviceGetCount_v2");
  const auto& nvml = CurrentMachine().nvml;
  if (starts == 0 || !nvml) return NVML_ERROR_UNINITIALIZED;
  const Disturbance met = Announce("nvmlDeviceGetCount_v2", {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return kUnknownError;
  if (met == Disturbance::kAbsurd) *count = kAbsurdCount;
  if (met == Disturbance::kAbsurd) return NVML_SUCCESS;
  if (nvml->count) return Give(nvml->count, *count);
  *count = static_cast<unsigned int>(nvml->devices.size());
  return NVML_SUCCESS;
}

nvmlReturn_t nvmlDeviceGetHandleByIndex_v2(unsigned int index, nvmlDevice_t* device) {
  Record("nvmlDeviceGetHandleByIndex_v2");
  if (starts == 0) return NVML_ERROR_UNINITIALIZED;
  const NvmlDevice* const found = FindDevice(ToHandle(index));
  if (found == nullptr) return NVML_ERROR_INVALID_ARGUMENT;
  const Disturbance met = Announce("nvmlDeviceGetHandleByIndex_v2", {Disturbance::kFails, Disturbance::kNull});
  if (met == Disturbance::kFails) return kUnknownError;
  if (met == Disturbance::kNull) *device = nullptr;
  if (met == Disturbance::kNull) return NVML_SUCCESS;
  if (found->open == 0) *device = ToHandle(index);
  return ToReturn(found->open);
}

nvmlReturn_t nvmlDeviceGetSerial(nvmlDevice_t device, char* serial, unsigned int capacity) {
  return AnsweredText("nvmlDeviceGetSerial", device, &NvmlDevice::serial, serial, capacity);
}

nvmlReturn_t nvmlDeviceGetPciInfo_v3(nvmlDevice_t device, nvmlPciInfo_t* pci) {
  if (pci == nullptr) return NVML_ERROR_INVALID_ARGUMENT;
  return AnsweredText("nvmlDeviceGetPciInfo_v3", device, &NvmlDevice::bus_id, pci->busId, sizeof pci->busId);
}

nvmlReturn_t nvmlDeviceGetCurrentClocksThrottleReasons(nvmlDevice_t device, unsigned long long* reasons) {
  return Answered("nvmlDeviceGetCurrentClocksThrottleReasons", device, reasons,
                  [&](const NvmlDevice& facts) { return Give(facts.throttle_reasons, *reasons); });
}

nvmlReturn_t nvmlDeviceGetTemperature(nvmlDevice_t device, nvmlTemperatureSensors_t sensor, unsigned int* celsius) {
  return Answered("nvmlDeviceGetTemperature", device, celsius, [&](const NvmlDevice& facts) {
    return sensor == NVML_TEMPERATURE_GPU ? Give(facts.temperature_celsius, *celsius) : NVML_ERROR_INVALID_ARGUMENT;
  });
}

nvmlReturn_t nvmlDeviceGetClock(nvmlDevice_t device, nvmlClockType_t type, nvmlClockId_t id, unsigned int* mhz) {
  const auto read = [&](const NvmlDevice& facts) {
    if (id != NVML_CLOCK_ID_CURRENT) return NVML_ERROR_NOT_SUPPORTED;
    if (type == NVML_CLOCK_GRAPHICS) return Give(facts.graphics_clock_mhz, *mhz);
    return type == NVML_CLOCK_MEM ? Give(facts.memory_clock_mhz, *mhz) : NVML_ERROR_NOT_SUPPORTED;
  };
  return Answered("nvmlDeviceGetClock", device, mhz, read, "(" + std::to_string(type) + ")");
}

nvmlReturn_t nvmlDeviceGetMemoryBusWidth(nvmlDevice_t device, unsigned int* bits) {
  return Answered("nvmlDeviceGetMemoryBusWidth", device, bits,
                  [&](const NvmlDevice& facts) { return Give(facts.memory_bus_width_bits, *bits); });
}

nvmlReturn_t nvmlDeviceGetMemoryInfo(nvmlDevice_t device, nvmlMemory_t* memory) {
  return Answered("nvmlDeviceGetMemoryInfo", device, memory, [&](const NvmlDevice& facts) {
    nvmlMemory_t answer{};
    const nvmlReturn_t total = Give(facts.memory_total_bytes, answer.total);
    const nvmlReturn_t used = Give(facts.memory_used_bytes, answer.used);
    if (total != NVML_SUCCESS || used != NVML_SUCCESS) return total != NVML_SUCCESS ? total : used;
    answer.free = answer.total - std::min(answer.total, answer.used);
    *memory = answer;
    return NVML_SUCCESS;
  });
}

nvmlReturn_t nvmlDeviceGetUtilizationRates(nvmlDevice_t device, nvmlUtilization_t* rates) {
  return Answered("nvmlDeviceGetUtilizationRates", device, rates,
                  [&](const NvmlDevice& facts) { return Give(facts.gpu_percent, rates->gpu); });
}

nvmlReturn_t nvmlDeviceGetEncoderUtilization(nvmlDevice_t device, unsigned int* percent,
                                             unsigned int* sampling_period_us) {
  return GiveUtilization("nvmlDeviceGetEncoderUtilization", device, &NvmlDevice::encoder_percent, percent,
                         sampling_period_us);
}

nvmlReturn_t nvmlDeviceGetDecoderUtilization(nvmlDevice_t device, unsigned int* percent,
                                             unsigned int* sampling_period_us) {
  return GiveUtilization("nvmlDeviceGetDecoderUtilization", device, &NvmlDevice::decoder_percent, percent,
                         sampling_period_us);
}

}  // extern "C"

}  // namespace zt::simulation
