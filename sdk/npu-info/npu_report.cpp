#include "npu_report.h"

#include <nlohmann/json.hpp>

namespace zt::shared::npu {
namespace {

using nlohmann::json;

json Describe(const Npu& npu) {
  json description = json::object();
  if (!npu.device_id.empty()) description["device_id"] = npu.device_id;
  if (npu.temperature_celsius) description["adapter_temp_celsius"] = *npu.temperature_celsius;
  if (npu.engine_frequency_hz) {
    description["adapter_engine_frequency_hz"] = {{"frequency", *npu.engine_frequency_hz}};
  }
  if (npu.memory_frequency_hz) {
    description["adapter_mem_frequency_hz"] = {{"frequency", *npu.memory_frequency_hz}};
  }
  if (npu.memory_in_use) {
    const auto [dedicated, shared] = *npu.memory_in_use;
    description["adapter_mem_usage"] = {{"dedicated", dedicated}, {"shared", shared}};
    description["memory_used"] = dedicated + shared;
  }
  if (npu.memory_size) {
    const auto [dedicated, shared] = *npu.memory_size;
    description["dedicated_system_memory"] = dedicated;
    description["shared_system_memory"] = shared;
    description["memory_total"] = dedicated + shared;
  }
  return description;
}

}  // namespace

std::string ComposeReport(const std::vector<Npu>& npus) {
  if (npus.empty()) return {};
  json descriptions = json::array();
  for (const Npu& npu : npus) descriptions.push_back(Describe(npu));
  return json{{"npu_count", npus.size()}, {"npu_info", std::move(descriptions)}}.dump();
}

}  // namespace zt::shared::npu
