#include "samplers/npu_msg.h"

#include <cstdint>
#include <sstream>
#include <string>
#include <typeinfo>

#include "base/json_document.h"
#include "messages/record_parts.h"
#include "samplers/json_numbers.h"
#include "types/conversions.h"
#include "zt/shared/npu/npu_info.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo;
using nlohmann::json;
using shared::npu::NPUInfo;

constexpr int kMaximumNpus = 32;
constexpr double kBytesPerMebibyte = 1048576.0;
constexpr double kBytesPerGibibyte = 1073741824.0;
constexpr char kSensorName[] = "Temp_0";
constexpr char kInvalidReport[] = "Invalid NPU JSON";
constexpr std::int64_t kInvalidReportCode = -1;

// The value of a key; null where there is none, also where `object` is of another type.
const json* Find(const json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() ? &*found : nullptr;
}

// Reads through a stream, which stops behind the first complete value: what a library leaves after it is ignored.
void Parse(const std::string& text, base::JsonDocument& document) {
  std::istringstream stream(text);
  document.ReadFirst(stream);
}

const json& RequireNpus(const json& document) {
  const json* count = Find(document, "npu_count");
  const bool has_npus = count != nullptr && ReadInt32(*count) > 0;
  const json* npus = has_npus ? Find(document, "npu_info") : nullptr;
  if (npus != nullptr && npus->is_array()) return *npus;
  throw common::Error(common::Error::kCallFailed, kInvalidReportCode, kInvalidReport, typeid(NPUInfo).name(), "");
}

// Null for an NPU that cannot be told from others.
const std::string* FindDeviceId(const json& npu) {
  const json* id = Find(npu, "device_id");
  const std::string* text = id != nullptr ? id->get_ptr<const std::string*>() : nullptr;
  return text != nullptr && !text->empty() ? text : nullptr;
}

void FillTemperature(const json& npu, PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& entry) {
  const json* celsius = Find(npu, "adapter_temp_celsius");
  if (celsius == nullptr) return;
  const auto whole_degrees = static_cast<std::uint32_t>(TruncateToUint64(ReadDouble(*celsius)));
  auto& sensor = AddEntry(*entry.mutable_temperature_sensors_info());
  sensor.set_sensor_name(kSensorName);
  sensor.set_temperature_celsius(whole_degrees);
}

// Hertz, into fields named MHz: consumers of the record rely on the figure as it is.
void FillClocks(const json& npu, PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& entry) {
  const json* engine = Find(npu, "adapter_engine_frequency_hz");
  const json* engine_hz = engine != nullptr ? Find(*engine, "frequency") : nullptr;
  if (engine_hz != nullptr) entry.set_npus_clock_mhz(ReadFloat(*engine_hz));
  const json* memory = Find(npu, "adapter_mem_frequency_hz");
  const json* memory_hz = memory != nullptr ? Find(*memory, "frequency") : nullptr;
  if (memory_hz != nullptr) entry.set_memory_clock_mhz(ReadFloat(*memory_hz));
}

// Mebibytes, although the field says MB. Shared memory in use wraps from 2 GiB on.
void FillMemoryInUse(const json& npu, PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& entry) {
  const json* usage = Find(npu, "adapter_mem_usage");
  if (usage == nullptr) return;
  const json* dedicated = Find(*usage, "dedicated");
  const json* shared = Find(*usage, "shared");
  if (dedicated == nullptr || shared == nullptr) return;
  entry.set_memory_used_mb(static_cast<float>((ReadDouble(*dedicated) + ReadInt32(*shared)) / kBytesPerMebibyte));
}

// No bandwidth: the field carries the memory that the NPU can address, in gibibytes.
void FillAddressableMemory(const json& npu, PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& entry) {
  const json* dedicated = Find(npu, "dedicated_system_memory");
  const json* shared = Find(npu, "shared_system_memory");
  if (dedicated == nullptr || shared == nullptr) return;
  entry.set_memory_bandwidth_gb(static_cast<float>((ReadDouble(*shared) + ReadDouble(*dedicated)) / kBytesPerGibibyte));
}

// An integral quotient: 0 until all memory is in use, then 100. Without any memory there is no such share.
void FillMemoryUtilization(const json& npu, PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& entry) {
  const json* total = Find(npu, "memory_total");
  const json* used = Find(npu, "memory_used");
  if (total == nullptr || used == nullptr) return;
  const std::uint64_t total_bytes = ReadUint64(*total);
  const std::uint64_t used_bytes = ReadUint64(*used);
  if (total_bytes == 0) return;
  const std::uint64_t share = used_bytes / total_bytes;
  entry.set_memory_controller_utilization_percent(static_cast<float>(share * 100));
}

void AddNpu(const std::string& device_id, const json& npu, PcLogPerformanceSamplesAsCDM_HwInfo& hardware) {
  auto& entry = AddEntry(*hardware.mutable_npus_info());
  entry.set_device_id(device_id);
  FillTemperature(npu, entry);
  FillClocks(npu, entry);
  FillMemoryInUse(npu, entry);
  FillAddressableMemory(npu, entry);
  FillMemoryUtilization(npu, entry);
}

}  // namespace

NPUMsg::NPUMsg(const PerfMessages& other) : PerfMessages(other) {}

NPUMsg::NPUMsg() = default;

void NPUMsg::PopulateStorageAndUploadProtos() {
  auto& hardware = OpenHardware(*static_cdm_);
  NPUInfo library;
  const std::string report = library.GetNPUInfoAsJsonString();
  if (report.empty()) return;
  base::JsonDocument document;
  Parse(report, document);
  int count = 0;
  for (const json& npu : RequireNpus(document.Root())) {
    const std::string* device_id = FindDeviceId(npu);
    if (device_id == nullptr) continue;
    if (++count > kMaximumNpus) return;
    AddNpu(*device_id, npu, hardware);
  }
}

}  // namespace zt::telemetry::collector::performancesamples
