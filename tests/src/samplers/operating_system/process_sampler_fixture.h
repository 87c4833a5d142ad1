#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "samplers/operating_system_info_msg.h"
#include "support/collector_fixture.h"
#include "support/sampler_test.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {

using OperatingSystemSection = contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo;

inline constexpr char kProcessesQuery[] =
    "SELECT Name, IDProcess, PercentProcessorTime, PriorityBase FROM Win32_PerfFormattedData_PerfProc_Process";
inline constexpr char kOperationsQuery[] =
    "SELECT ProcessId, WriteOperationCount, ReadOperationCount FROM Win32_Process WHERE ";
inline constexpr char kListedClass[] = "Win32_PerfFormattedData_PerfProc_Process";
inline constexpr char kOperationsClass[] = "Win32_Process";

inline constexpr std::uint64_t kSecond100ns = 10'000'000;
inline constexpr simulation::Failure kRefused{tests::kCallDenied};

/// The process sampler over a machine with a session and no process, to which a test adds its own.
class ProcessSamplerTest : public SamplerTest, protected CollectorWithHost {
 protected:
  ProcessSamplerTest() {
    machine_.clock = ExampleClock();
    machine_.session = {{3'600'000, 3'600'000}, 10, 3'540'000U};
  }

  /// Adds a running process of 2 s, 64 MiB and a peak of 128 MiB to the system and to both tables. What is returned is
  /// valid until the next one.
  simulation::Process& AddProcess(std::uint32_t id, double load, const std::string& name = "app") {
    AddListedRow(std::to_string(id), load, name);
    machine_.wmi.classes[kOperationsClass].push_back({{"ProcessId", static_cast<std::int32_t>(id)},
                                                      {"WriteOperationCount", "4096"},
                                                      {"ReadOperationCount", "2048"}});
    return AddToSystem(id);
  }

  simulation::Process& AddToSystem(std::uint32_t id) {
    simulation::Process& process = machine_.processes.emplace_back();
    process.id = id;
    process.created_100ns = 1'772'892'000 * static_cast<std::int64_t>(kSecond100ns);  // 2026-03-07T14:00:00Z
    process.user_100ns = kSecond100ns;
    process.kernel_100ns = kSecond100ns;
    process.working_set_bytes = 64ULL << 20U;
    process.peak_working_set_bytes = 128ULL << 20U;
    return process;
  }

  void AddListedRow(const simulation::WmiProperty& id, const simulation::WmiProperty& load,
                    const std::string& name = "app") {
    machine_.wmi.classes[kListedClass].push_back(
        {{"Name", name}, {"IDProcess", id}, {"PercentProcessorTime", load}, {"PriorityBase", 8}});
  }

  simulation::WmiRow& OperationsRow(std::size_t index = 0) { return machine_.wmi.classes[kOperationsClass].at(index); }

  /// Lets `change` happen to the machine after its processes are listed and before their details are asked.
  void ChangeBetweenThePasses(const std::function<void(simulation::Machine&)>& change) {
    changed_ = machine_;
    change(changed_);
    shared::wmi::ObserveQueries([this](const std::wstring& wql) {
      if (wql.find(L"FROM Win32_Process ") != std::wstring::npos) simulation::UseMachine(changed_);
    });
  }

  /// Samples the machine; the section is the shared record's.
  const OperatingSystemSection& Sample() {
    Populate<OperatingSystemInfoMsg>(&wmi_);
    return Section();
  }

  /// The exception that sampling ends with, which stays the sampler's.
  const std::exception* SampleAndCatch() {
    try {
      Sample();
    } catch (const std::exception* failure) {
      return failure;
    }
    ADD_FAILURE() << "no exception was thrown";
    return nullptr;
  }

  /// Its text.
  std::string SampleAndFail() {
    const std::exception* const failure = SampleAndCatch();
    return failure != nullptr ? failure->what() : std::string();
  }

  static const OperatingSystemSection& Section() { return PerfMessages::static_cdm_->operating_system_info(); }

  /// The names of the processes reported, in their order.
  static std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& process : Section().resource_intensive_processes_info())
      names.push_back(process.executable_file_id());
    return names;
  }

  /// The only process reported.
  const auto& SampleOnly() {
    const OperatingSystemSection& section = Sample();
    EXPECT_EQ(section.resource_intensive_processes_info_size(), 1);
    return section.resource_intensive_processes_info(0);
  }

  ~ProcessSamplerTest() override { shared::wmi::ObserveQueries({}); }

  simulation::Machine changed_;
};

}  // namespace zt::telemetry::collector::performancesamples
