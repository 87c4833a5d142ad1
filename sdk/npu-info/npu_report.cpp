#include "npu_report.h"

#include "base/json_document.h"

namespace zt::shared::npu {
namespace {

using json = base::JsonDocument::Json;

json& AddObject(json& object, const char* key) {
  return object[key] = json::value_t::object;
}

void Describe(const Npu& npu, json& description) {
  if (!npu.device_id.empty()) description["device_id"] = npu.device_id;
  if (npu.temperature_celsius) description["adapter_temp_celsius"] = *npu.temperature_celsius;
  if (npu.engine_frequency_hz) {
    AddObject(description, "adapter_engine_frequency_hz")["frequency"] = *npu.engine_frequency_hz;
  }
  if (npu.memory_frequency_hz) {
    AddObject(description, "adapter_mem_frequency_hz")["frequency"] = *npu.memory_frequency_hz;
  }
  if (npu.memory_in_use) {
    const auto [dedicated, shared] = *npu.memory_in_use;
    json& usage = AddObject(description, "adapter_mem_usage");
    usage["dedicated"] = dedicated;
    usage["shared"] = shared;
    description["memory_used"] = dedicated + shared;
  }
  if (npu.memory_size) {
    const auto [dedicated, shared] = *npu.memory_size;
    description["dedicated_system_memory"] = dedicated;
    description["shared_system_memory"] = shared;
    description["memory_total"] = dedicated + shared;
  }
}

}  // namespace

std::string ComposeReport(const std::vector<Npu>& npus) {
  if (npus.empty()) return {};
  base::JsonDocument report;
  report.Root() = json::value_t::object;
  report.Root()["npu_count"] = npus.size();
  json& descriptions = report.Root()["npu_info"] = json::value_t::array;
  for (const Npu& npu : npus) Describe(npu, descriptions.emplace_back(json::value_t::object));
  return report.Root().dump();
}

}  // namespace zt::shared::npu
