#include "tests/endurance/changing_machine.h"

#include <limits>
#include <set>
#include <utility>

namespace zt::endurance {
namespace {

using simulation::Failure;
using simulation::Machine;

constexpr std::uint64_t kPercent = 101;
constexpr std::uint64_t kRarely = 20;
constexpr std::uint64_t kMostTextBytes = 300;
constexpr std::uint64_t kManyBytes = std::uint64_t{1} << 40U;
constexpr std::int64_t kSecondsBetweenCycles = 600;

// Those that nothing else of the machine refers to.
const std::set<std::string>& ChangingProperties() {
  static const std::set<std::string> names = {"ConfiguredClockSpeed", "FreePhysicalMemory",  "FreeSpace",
                                              "FreeVirtualMemory",    "LoadPercentage",      "PercentProcessorTime",
                                              "ReadOperationCount",   "Temperature",         "TotalVirtualMemorySize",
                                              "WriteOperationCount",  "TotalPhysicalMemory", "Present"};
  return names;
}

}  // namespace

std::string ChangingMachine::Text() {
  return std::string(Below(kMostTextBytes), static_cast<char>('A' + Below(26)));
}

void ChangingMachine::Change(simulation::WmiProperty& property) {
  if (OnceIn(kRarely)) {
    property = simulation::WmiNull();
  } else if (std::holds_alternative<bool>(property)) {
    property = !OnceIn(kRarely);
  } else if (std::holds_alternative<std::int32_t>(property)) {
    property = static_cast<std::int32_t>(Below(kManyBytes));
  } else if (std::holds_alternative<std::string>(property)) {
    property = std::to_string(Below(kManyBytes));
  }
}

void ChangingMachine::ChangeWmi(simulation::Wmi& wmi) {
  const auto change = [this](std::vector<simulation::WmiRow>& rows) {
    for (simulation::WmiRow& row : rows) {
      for (auto& [name, property] : row) {
        if (ChangingProperties().contains(name)) Change(property);
      }
    }
  };
  for (auto& [name, rows] : wmi.classes) change(rows);
  for (simulation::WmiAssociation& association : wmi.associations) change(association.rows);
}

void ChangingMachine::ChangeBatteries(Machine& machine) {
  for (std::optional<simulation::Battery>& battery : machine.batteries) {
    if (OnceIn(kRarely)) battery.reset();
    if (!battery) continue;
    if (OnceIn(kRarely)) battery->ct_number = Text();
    battery->remaining_capacity_mwh = static_cast<std::uint32_t>(Below(60'000));
    battery->remaining_percent = static_cast<float>(Below(kPercent));
    battery->voltage_mv = static_cast<std::int32_t>(Below(14'000));
    battery->temperature_celsius = static_cast<std::int32_t>(Below(90)) - 20;
    battery->discharging = OnceIn(2);
  }
}

void ChangingMachine::ChangePosture(simulation::Sensors& sensors) {
  if (!sensors.hinge) return;
  constexpr std::uint64_t kOutcomes = 4;
  constexpr std::uint64_t kFullCircle = 361;
  sensors.hinge->angle_degrees = static_cast<double>(Below(kFullCircle));
  if (OnceIn(kRarely)) sensors.hinge->angle_degrees = std::numeric_limits<double>::quiet_NaN();
  if (OnceIn(kRarely)) sensors.hinge->outcome = static_cast<simulation::HingeOutcome>(Below(kOutcomes));
  sensors.orientation = static_cast<std::int32_t>(Below(6));
}

void ChangingMachine::ChangeNvidia(simulation::Nvml& nvml) {
  if (OnceIn(kRarely) && !nvml.devices.empty()) nvml.devices.pop_back();
  for (simulation::NvmlDevice& device : nvml.devices) {
    device.throttle_reasons = Below(0x200);
    device.temperature_celsius = static_cast<std::uint32_t>(Below(100));
    device.graphics_clock_mhz = static_cast<std::uint32_t>(Below(3000));
    device.memory_used_bytes = Below(kManyBytes);
    device.gpu_percent = static_cast<std::uint32_t>(Below(kPercent));
    if (OnceIn(kRarely)) device.serial = Failure{3};
  }
}

void ChangingMachine::ChangeAmd(simulation::Adlx& adlx) {
  for (simulation::AdlxGpu& gpu : adlx.gpus) {
    gpu.usage_percent = static_cast<double>(Below(kPercent));
    gpu.clock_mhz = static_cast<std::int32_t>(Below(3000));
    gpu.memory_used_mb = static_cast<std::int32_t>(Below(16'000));
    if (OnceIn(2)) gpu.temperature_celsius = static_cast<double>(Below(100));
    if (OnceIn(kRarely)) gpu.temperature_celsius.reset();
  }
}

void ChangingMachine::ChangeNpus(Machine& machine) {
  if (!OnceIn(kRarely) || machine.npu_report.empty()) return;
  machine.npu_report.resize(Below(machine.npu_report.size()));  // a report that breaks off
}

void ChangingMachine::ChangeProcesses(Machine& machine) {
  std::erase_if(machine.processes, [this](const auto&) { return OnceIn(kRarely); });
  for (simulation::Process& process : machine.processes) {
    process.user_100ns = Below(kManyBytes);
    process.working_set_bytes = Below(kManyBytes);
    process.windows.resize(Below(3));
    for (simulation::Window& window : process.windows) window.title = Text();
  }
}

Machine ChangingMachine::Next() {
  Machine machine = base_;
  ++machines_;
  if (machine.clock && machine.clock->utc_seconds) *machine.clock->utc_seconds += machines_ * kSecondsBetweenCycles;
  if (OnceIn(kRarely)) machine.smbios_serial_number = Text();
  ChangeWmi(machine.wmi);
  ChangeBatteries(machine);
  ChangePosture(machine.sensors);
  if (machine.nvml) ChangeNvidia(*machine.nvml);
  if (machine.adlx) ChangeAmd(*machine.adlx);
  ChangeNpus(machine);
  ChangeProcesses(machine);
  return machine;
}

}  // namespace zt::endurance
