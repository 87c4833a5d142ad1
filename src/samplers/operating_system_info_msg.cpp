#include "samplers/operating_system_info_msg.h"

#include <plog/Log.h>

#include <memory>
#include <string>
#include <utility>

#include "messages/record_parts.h"
#include "samplers/operating_system/process_details.h"
#include "samplers/operating_system/process_operations.h"
#include "samplers/operating_system/process_section.h"
#include "samplers/operating_system/process_table.h"
#include "samplers/operating_system/session_figures.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

OperatingSystemInfoMsg::OperatingSystemInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

OperatingSystemInfoMsg::OperatingSystemInfoMsg(shared::wmi::WMIClient* wmi_client) : PerfMessages(wmi_client) {}

void OperatingSystemInfoMsg::PopulateStorageAndUploadProtos() {
  using Record = PcLogPerformanceSamplesAsCDM;
  using System = contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo;
  auto& section =
      OpenSection(*static_cdm_, &Record::mutable_operating_system_info, &Record::clear_operating_system_info);
  FillSession(OpenSection(section, &System::mutable_operating_session_info, &System::clear_operating_session_info));
  AddProcesses(GetMostIntesiveProcessList(), section);
}

ProcessTable OperatingSystemInfoMsg::GetProcessTable() {
  return ListProcesses(wmi_client_);
}

ProcessList OperatingSystemInfoMsg::GetMostIntesiveProcessList() {
  const ProcessTable table = GetProcessTable();
  const ProcessList busiest = BusiestOf(table);
  if (busiest.empty()) return {};
  const std::int32_t status = wmi_client_->ExecQuery(OperationsQuery(busiest));
  if (status != shared::wmi::kSuccess) {
    PLOG_WARNING << "Processes are left out: querying Win32_Process failed with status " << std::to_string(status);
  }
  ProcessList result;
  while (wmi_client_->Next()) {
    std::shared_ptr<WMIProcessInfo> process;
    // One bad row costs its own process only, whatever is thrown on the way.
    try {
      process = FindProcessOfRow(*wmi_client_, table);
      ConvertUnits(*process);
    } catch (...) {
      PLOG_WARNING << "A process is left out: " << common::Error::FromCurrentException().description;
      continue;
    }
    FillDetails(*process);
    result.push_back(std::move(process));
  }
  return result;
}

}  // namespace zt::telemetry::collector::performancesamples
