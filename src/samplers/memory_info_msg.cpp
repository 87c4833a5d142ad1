#include "samplers/memory_info_msg.h"

#include <cstdint>

#include "messages/record_parts.h"
#include "samplers/rounding.h"
#include "samplers/wmi_query.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using shared::wmi::WMIClient;

constexpr wchar_t kModulesQuery[] = L"SELECT ConfiguredClockSpeed FROM Win32_PhysicalMemory";
constexpr wchar_t kComputerQuery[] = L"SELECT TotalPhysicalMemory FROM Win32_ComputerSystem";
constexpr wchar_t kSystemQuery[] =
    L"SELECT FreePhysicalMemory, TotalVirtualMemorySize, FreeVirtualMemory FROM Win32_OperatingSystem";

constexpr char kModulesFailure[] = "Error while querying Win32_PhysicalMemory";
constexpr char kComputerFailure[] = "Error while querying Win32_ComputerSystem";
constexpr char kSystemFailure[] = "Error while querying Win32_OperatingSystem";

// Not 1024: the total is taken in thousands of bytes while free memory is in kibibytes. Fleets are compared by the
// figure that this mix gives.
constexpr std::uint64_t kBytesPerTotalUnit = 1000;

struct Memory {
  std::uint64_t total_physical_bytes = 0;
  std::uint64_t free_physical_kb = 0;
  std::uint64_t total_virtual_kb = 0;
  std::uint64_t free_virtual_kb = 0;
};

// Keeps the smallest clock of the modules other than 0 in the platform-management record.
void ReadModuleClocks(WMIClient* wmi, AmdPmfSamples& amd_pmf) {
  RequireSuccess(RunQuery(wmi, kModulesQuery), kModulesFailure);
  std::uint32_t smallest = 0;
  std::uint32_t clock = 0;
  while (wmi->Next()) {
    wmi->GetValue(L"ConfiguredClockSpeed", clock);
    if (smallest == 0 || (clock != 0 && clock < smallest)) smallest = clock;
    amd_pmf.set_memory_clock_mhz(smallest);
  }
}

void ReadComputer(WMIClient& wmi, Memory& memory) {
  const std::int32_t status = wmi.ExecQuery(kComputerQuery);
  if (wmi.Next()) wmi.GetValue(L"TotalPhysicalMemory", memory.total_physical_bytes);
  RequireSuccess(status, kComputerFailure);
}

void ReadSystem(WMIClient& wmi, Memory& memory) {
  const std::int32_t status = wmi.ExecQuery(kSystemQuery);
  if (wmi.Next()) {
    wmi.GetValue(L"FreePhysicalMemory", memory.free_physical_kb);
    wmi.GetValue(L"TotalVirtualMemorySize", memory.total_virtual_kb);
    wmi.GetValue(L"FreeVirtualMemory", memory.free_virtual_kb);
  }
  RequireSuccess(status, kSystemFailure);
}

float UtilizationPercent(std::uint64_t used, std::uint64_t total) {
  if (total == 0) return 0;
  return static_cast<float>(static_cast<double>(static_cast<float>(used)) * 100.0 / static_cast<double>(total));
}

}  // namespace

MemoryInfoMsg::MemoryInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

MemoryInfoMsg::MemoryInfoMsg(shared::wmi::WMIClient* wmi_client) : PerfMessages(wmi_client) {}

void MemoryInfoMsg::PopulateStorageAndUploadProtos() {
  using Hardware = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
  auto& section = OpenSection(OpenHardware(*static_cdm_), &Hardware::mutable_system_memory_info,
                              &Hardware::clear_system_memory_info);
  ReadModuleClocks(wmi_client_, *amd_pmf_);
  Memory memory;
  ReadComputer(*wmi_client_, memory);
  ReadSystem(*wmi_client_, memory);

  // Unsigned arithmetic wraps where more is free than there is; the record takes the low 32 bits.
  const std::uint64_t total_physical = memory.total_physical_bytes / kBytesPerTotalUnit;
  const std::uint64_t used_physical = total_physical - memory.free_physical_kb;
  section.set_utilization_physical_percent(RoundToTwoDecimals(UtilizationPercent(used_physical, total_physical)));
  section.set_used_physical_memory_kb(static_cast<std::uint32_t>(used_physical));
  section.set_total_virtual_memory_kb(static_cast<std::uint32_t>(memory.total_virtual_kb));
  section.set_used_virtual_memory_kb(static_cast<std::uint32_t>(memory.total_virtual_kb - memory.free_virtual_kb));
}

}  // namespace zt::telemetry::collector::performancesamples
