#include "samplers/gpu/nvidia_card_info.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "samplers/gpu/decimal_number.h"
#include "samplers/gpu/nvml_library.h"
#include "samplers/gpu/nvml_texts.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using types::GraphicCardInfo;
using namespace nvml;

// With the end of the text.
constexpr unsigned int kSerialCapacity = 30;
// No reason has this value, so a failed reading gives no text.
constexpr unsigned long long kNoAnswer = 0xFFFF'FFFF'FFFF'FFFF;
constexpr double kBytesPerMegabyte = 1'000'000.0;

// What a library is taken to mean that says it opened a card and gives none: NVML_ERROR_UNKNOWN.
constexpr nvmlReturn_t kNoCardGiven{999};

// The card in hand. Never cleared: as long as it is set, some object has opened a card.
nvmlDevice_t module_wide_handle = nullptr;

// Calls a function of the library. One that the library does not export fails, as one that the card does not support.
template <base::EntryName name, typename... Arguments>
nvmlReturn_t Call(Arguments... arguments) {
  const nvml::Functions* const library = BindNvml();
  if (library == nullptr) return NVML_ERROR_LIBRARY_NOT_FOUND;
  auto* const function = library->Get<name>();
  return function != nullptr ? function(arguments...) : NVML_ERROR_FUNCTION_NOT_FOUND;
}

// False for a failure, which `error` then tells.
bool Check(nvmlReturn_t status, Error& error) {
  if (status == NVML_SUCCESS) return true;
  error = Error(Error::kCallFailed, status, DescribeNvmlReturn(status), typeid(nvmlReturn_t).name(), "");
  return false;
}

// Taken as a signed number: a count below zero is no card, like that of a failed call, and not one of billions.
int CountCards() {
  unsigned int count = 0;
  Call<"nvmlDeviceGetCount_v2">(&count);
  return static_cast<int>(count);
}

// Of a text whose buffer may be full.
template <std::size_t capacity>
std::string_view TextIn(const char (&buffer)[capacity]) {
  const std::string_view text(buffer, capacity);
  return text.substr(0, text.find('\0'));
}

// The bus is the hexadecimal part between the first two colons of "00000000:1A:00.0". It is read in base 10 on purpose
// (1A gives 1, and A1 gives 0): that is the number by which these cards are known in stored records.
std::uint32_t BusNumber(std::string_view bus_id) {
  const std::size_t first = bus_id.find(':');
  if (first == std::string_view::npos) return 0;
  const std::size_t second = bus_id.find(':', first + 1);
  if (second == std::string_view::npos) return 0;
  return DecimalNumber(bus_id.substr(first + 1, second - first - 1));
}

// Makes the card of this number the one in hand.
nvmlReturn_t Open(unsigned int number) {
  nvmlDevice_t opened = nullptr;
  const nvmlReturn_t status = Call<"nvmlDeviceGetHandleByIndex_v2">(number, &opened);
  if (status != NVML_SUCCESS) return status;
  if (opened == nullptr) return kNoCardGiven;
  module_wide_handle = opened;
  return status;
}

float ReadClock(nvmlClockType_t type) {
  unsigned int mhz = 0;
  Call<"nvmlDeviceGetClock">(module_wide_handle, type, NVML_CLOCK_ID_CURRENT, &mhz);
  return static_cast<float>(mhz);
}

void ReadMemory(GraphicCardInfo& card) {
  nvmlMemory_t memory{};
  Call<"nvmlDeviceGetMemoryInfo">(module_wide_handle, &memory);
  // Without any memory, as after a failed reading, there is no such share: 0 / 0 is NaN.
  card.memory_controller_utilization_percent =
      static_cast<float>(memory.used) / static_cast<float>(memory.total) * 100.0F;
  card.memory_used_mb = static_cast<float>(static_cast<double>(memory.used) / kBytesPerMegabyte);
}

// Of the encoder or the decoder.
template <base::EntryName function>
float ReadUtilization() {
  unsigned int percent = 0;
  unsigned int sampling_period_us = 0;
  Call<function>(module_wide_handle, &percent, &sampling_period_us);
  return static_cast<float>(percent);
}

}  // namespace

NvidiaCardInfo::NvidiaCardInfo() = default;

NvidiaCardInfo::~NvidiaCardInfo() {
  if (module_wide_handle != nullptr) Call<"nvmlShutdown">();
}

Error NvidiaCardInfo::QueryValues(std::vector<GraphicCardInfo>* cards) {
  Error error;
  if (!Check(Call<"nvmlInit_v2">(), error)) return error;
  const int count = std::min(CountCards(), kMostCardsOfVendor);
  for (int index = 0; index < count; ++index) {
    if (!Check(Open(static_cast<unsigned int>(index)), error)) continue;
    GraphicCardInfo card;
    RetrieveBoardInfo(&card);
    RetrievePerformanceInfo(&card);
    cards->push_back(std::move(card));
  }
  return error;
}

void NvidiaCardInfo::RetrieveBoardInfo(GraphicCardInfo* card) {
  char serial[kSerialCapacity] = {};
  if (Call<"nvmlDeviceGetSerial">(module_wide_handle, &serial[0], kSerialCapacity) == NVML_SUCCESS) {
    card->serial_number = TextIn(serial);
  }
  nvmlPciInfo_t pci{};
  Call<"nvmlDeviceGetPciInfo_v3">(module_wide_handle, &pci);
  card->bus_number = BusNumber(TextIn(pci.busId));
}

void NvidiaCardInfo::RetrievePerformanceInfo(GraphicCardInfo* card) {
  unsigned long long reasons = kNoAnswer;
  Call<"nvmlDeviceGetCurrentClocksThrottleReasons">(module_wide_handle, &reasons);
  card->status_text = DescribeThrottleReasons(reasons);
  Call<"nvmlDeviceGetTemperature">(module_wide_handle, NVML_TEMPERATURE_GPU, &card->temperature_celsius);
  card->memory_clock_mhz = ReadClock(NVML_CLOCK_MEM);
  card->gpu_clock_mhz = ReadClock(NVML_CLOCK_GRAPHICS);
  unsigned int bus_width_bits = 0;
  Call<"nvmlDeviceGetMemoryBusWidth">(module_wide_handle, &bus_width_bits);
  card->memory_bandwidth_gb = static_cast<float>(bus_width_bits);
  ReadMemory(*card);
  nvmlUtilization_t rates{};
  Call<"nvmlDeviceGetUtilizationRates">(module_wide_handle, &rates);
  card->gpu_utilization_percent = static_cast<float>(rates.gpu);
  card->encoder_utilization_percent = ReadUtilization<"nvmlDeviceGetEncoderUtilization">();
  card->decoder_utilization_percent = ReadUtilization<"nvmlDeviceGetDecoderUtilization">();
}

}  // namespace zt::telemetry::collector::performancesamples
