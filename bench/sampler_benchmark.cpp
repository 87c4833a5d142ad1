// Each sampler alone on a simulated laptop, and the process list of a busy machine.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "messages/perf_messages.h"
#include "samplers/battery_info_msg.h"
#include "samplers/device_state_info_msg.h"
#include "samplers/memory_info_msg.h"
#include "samplers/npu_msg.h"
#include "samplers/operating_system_info_msg.h"
#include "samplers/storage_info_msg.h"
#include "simulation/profile.h"

namespace zt::bench {
namespace {

using simulation::Machine;
using telemetry::collector::performancesamples::BatteryInfoMsg;
using telemetry::collector::performancesamples::DeviceStateInfoMsg;
using telemetry::collector::performancesamples::MemoryInfoMsg;
using telemetry::collector::performancesamples::NPUMsg;
using telemetry::collector::performancesamples::OperatingSystemInfoMsg;
using telemetry::collector::performancesamples::PerfMessages;
using telemetry::collector::performancesamples::StorageInfoMsg;

constexpr char kLaptop[] = "convertible-laptop";
constexpr std::uint32_t kFirstProcessId = 1000;
constexpr std::uint32_t kIdStep = 4;
constexpr std::uint32_t kHundredPercent = 100;
constexpr std::int32_t kNormalPriority = 8;
constexpr std::uint64_t kTicksOfASecond = 10'000'000;
constexpr std::uint64_t kMebibyte = 1U << 20U;
constexpr std::int64_t kStarted = 17'728'000'000'000'000;  // March 2026

std::unique_ptr<PerfMessages> MakeSampler(std::type_identity<BatteryInfoMsg>, shared::wmi::WMIClient&,
                                          shared::ztbios::PrivateBiosWmi&) {
  return std::make_unique<BatteryInfoMsg>();
}

std::unique_ptr<PerfMessages> MakeSampler(std::type_identity<NPUMsg>, shared::wmi::WMIClient&,
                                          shared::ztbios::PrivateBiosWmi&) {
  return std::make_unique<NPUMsg>();
}

std::unique_ptr<PerfMessages> MakeSampler(std::type_identity<StorageInfoMsg>, shared::wmi::WMIClient& wmi,
                                          shared::ztbios::PrivateBiosWmi& bios) {
  return std::make_unique<StorageInfoMsg>(&wmi, &bios);
}

template <typename Sampler>
std::unique_ptr<PerfMessages> MakeSampler(std::type_identity<Sampler>, shared::wmi::WMIClient& wmi,
                                          shared::ztbios::PrivateBiosWmi&) {
  return std::make_unique<Sampler>(&wmi);
}

// A pass as the cycle runs it: a sampler of its own, on an empty record.
template <typename Sampler>
void RunPasses(benchmark::State& state, Machine machine) {
  simulation::UseMachine(std::move(machine));
  PerfMessages::Init(nullptr, 0);
  shared::wmi::WMIClient wmi(LR"(\\.\root\cimv2)");
  shared::ztbios::PrivateBiosWmi bios;
  for (auto unused : state) {
    PerfMessages::static_cdm_->Clear();
    MakeSampler(std::type_identity<Sampler>(), wmi, bios)->PopulateStorageAndUploadProtos();
  }
  state.counters["record_bytes"] = static_cast<double>(PerfMessages::static_cdm_->ByteSizeLong());
  if (PerfMessages::static_cdm_->ByteSizeLong() == 0) state.SkipWithError("the sampler added nothing");
}

template <typename Sampler>
void OnTheLaptop(benchmark::State& state) {
  RunPasses<Sampler>(state, simulation::ReadShippedProfile(kLaptop));
}
BENCHMARK(OnTheLaptop<BatteryInfoMsg>)->Name("Battery")->Unit(benchmark::kMicrosecond);
BENCHMARK(OnTheLaptop<DeviceStateInfoMsg>)->Name("Posture")->Unit(benchmark::kMicrosecond);
BENCHMARK(OnTheLaptop<MemoryInfoMsg>)->Name("Memory")->Unit(benchmark::kMicrosecond);
BENCHMARK(OnTheLaptop<NPUMsg>)->Name("Npu")->Unit(benchmark::kMicrosecond);
BENCHMARK(OnTheLaptop<StorageInfoMsg>)->Name("StorageDrives")->Unit(benchmark::kMicrosecond);
BENCHMARK(OnTheLaptop<OperatingSystemInfoMsg>)->Name("ProcessesAndSession")->Unit(benchmark::kMicrosecond);

Machine BusyMachine(std::uint32_t processes) {
  Machine machine = simulation::ReadShippedProfile(kLaptop);
  auto& rows = machine.wmi.classes["Win32_Process"];
  auto& loads = machine.wmi.classes["Win32_PerfFormattedData_PerfProc_Process"];
  rows.clear();
  loads.clear();
  machine.processes.clear();
  for (std::uint32_t i = 0; i < processes; ++i) {
    const std::uint32_t id = kFirstProcessId + kIdStep * i;
    const std::string name = "worker" + std::to_string(i);
    rows.push_back({{"ProcessId", static_cast<std::int32_t>(id)},
                    {"Name", name},
                    {"WriteOperationCount", std::to_string(i)},
                    {"ReadOperationCount", std::to_string(i)}});
    loads.push_back({{"IDProcess", static_cast<std::int32_t>(id)},
                     {"Name", name},
                     {"PercentProcessorTime", std::to_string(1 + i % kHundredPercent)},
                     {"PriorityBase", kNormalPriority}});
    simulation::Process process;
    process.id = id;
    process.created_100ns = kStarted;
    process.windows = {{.title = "Document"}};
    process.user_100ns = process.kernel_100ns = kTicksOfASecond * (i + 1);
    process.working_set_bytes = process.peak_working_set_bytes = kMebibyte * (i + 1);
    machine.processes.push_back(process);
  }
  return machine;
}

void ProcessList(benchmark::State& state) {
  RunPasses<OperatingSystemInfoMsg>(state, BusyMachine(static_cast<std::uint32_t>(state.range(0))));
}
BENCHMARK(ProcessList)->ArgName("processes")->Arg(50)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
