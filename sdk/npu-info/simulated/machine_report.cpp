#include "machine_report.h"

#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::shared::npu {
namespace {

using simulation::Disturbance;

constexpr auto kRefused = static_cast<std::int32_t>(0x80070005);  // E_ACCESSDENIED
constexpr char kAbsurdReport[] =
    R"({"npu_count": 2147483647, "npu_info": [{"device_id": "x", "memory_total": -1e308, "memory_used": 1e308,)"
    R"( "adapter_temp_celsius": 1e308, "adapter_mem_usage": {"dedicated": 18446744073709551615, "shared": -1}}]})";

// Cut in the middle: what is longer than its buffer.
std::string EndlessReport() {
  return R"({"npu_count": 1, "npu_info": [{"device_id": ")" + simulation::EndlessText();
}

}  // namespace

MachineReport ReadMachineReport() {
  switch (simulation::Announce("NPU report", {Disturbance::kFails, Disturbance::kThrows, Disturbance::kEmpty,
                                              Disturbance::kAbsurd, Disturbance::kEndlessText})) {
    case Disturbance::kFails:
      return {"", kRefused};
    case Disturbance::kEmpty:
      return {};
    case Disturbance::kAbsurd:
      return {kAbsurdReport, 0};
    case Disturbance::kEndlessText:
      return {EndlessReport(), 0};
    default:
      break;
  }
  const simulation::Machine& machine = simulation::CurrentMachine();
  return {machine.npu_report, machine.npu_failure ? machine.npu_failure->status : 0};
}

}  // namespace zt::shared::npu
