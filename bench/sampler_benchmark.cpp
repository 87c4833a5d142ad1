// Each source alone on a simulated laptop, and the process list of a busy machine.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>

#include "collector/sources.h"
#include "messages/perf_messages.h"
#include "samplers/operating_system_info_msg.h"
#include "simulation/profile.h"

namespace zt::bench {
namespace {

using simulation::Machine;
using telemetry::collector::performancesamples::Clients;
using telemetry::collector::performancesamples::OperatingSystemInfoMsg;
using telemetry::collector::performancesamples::PerfMessages;
using telemetry::collector::performancesamples::Source;
using telemetry::collector::performancesamples::Sources;

constexpr char kLaptop[] = "convertible-laptop";
constexpr std::uint32_t kFirstProcessId = 1000;
constexpr std::uint32_t kIdStep = 4;
constexpr std::uint32_t kHundredPercent = 100;
constexpr std::int32_t kNormalPriority = 8;
constexpr std::uint64_t kTicksOfASecond = 10'000'000;
constexpr std::uint64_t kMebibyte = 1U << 20U;
constexpr std::int64_t kStarted = 17'728'000'000'000'000;  // March 2026

// A pass as the cycle runs it: a builder of its own, on an empty record.
void RunPasses(benchmark::State& state, const Source& source, Machine machine) {
  simulation::UseMachine(std::move(machine));
  PerfMessages::Init(nullptr, 0);
  Clients clients;
  for (auto unused : state) {
    PerfMessages::static_cdm_->Clear();
    source.make(clients)->PopulateStorageAndUploadProtos();
  }
  state.counters["record_bytes"] = static_cast<double>(PerfMessages::static_cdm_->ByteSizeLong());
  if (PerfMessages::static_cdm_->ByteSizeLong() == 0) state.SkipWithError("the source added nothing");
}

// Each source of a collection, under its own name.
bool RegisterSources() {
  for (const Source& source : Sources()) {
    const auto run = [&source](benchmark::State& state) {
      RunPasses(state, source, simulation::ReadShippedProfile(kLaptop));
    };
    benchmark::RegisterBenchmark(source.name, run)->Unit(benchmark::kMicrosecond);
  }
  return true;
}
[[maybe_unused]] const bool registered = RegisterSources();

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
  const auto make = [](Clients& clients) -> std::shared_ptr<PerfMessages> {
    return std::make_shared<OperatingSystemInfoMsg>(clients.Wmi());
  };
  RunPasses(state, {"Processes and session", make}, BusyMachine(static_cast<std::uint32_t>(state.range(0))));
}
BENCHMARK(ProcessList)->ArgName("processes")->Arg(50)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
