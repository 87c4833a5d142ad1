// The texts that the summary query gives for an hour of thermal samples. An input is a line for each column, name and
// text, a blank between.
#include <string>
#include <vector>

#include "checked_record.h"
#include "forgetful_machine.h"
#include "store/thermal_summary.h"
#include "zt/shared/wmi/wmi_client.h"

namespace {

using namespace zt::telemetry::collector::performancesamples;

zt::simulation::Machine MachineWithProcessor() {
  zt::simulation::Machine machine;
  machine.clock = {1772893242, -180, -120};
  machine.wmi.classes["Win32_Processor"] = {{{"DeviceID", "CPU0"}, {"LoadPercentage", 17}}};
  return machine;
}

SummaryRow ReadRow(std::string_view text) {
  SummaryRow row;
  while (!text.empty()) {
    const std::string_view line = zt::fuzz::TakeLine(text);
    const std::size_t blank = line.find(' ');
    if (blank != std::string_view::npos) row[std::string(line.substr(0, blank))] = line.substr(blank + 1);
  }
  return row;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static zt::fuzz::ForgetfulMachine machine(MachineWithProcessor());
  machine.Use();
  zt::shared::wmi::WMIClient wmi(zt::shared::wmi::kSystemNamespace);
  const SummaryRow hour = ReadRow(zt::fuzz::TextOf(data, size));
  // Now and then the same twice: nothing of an hour may reach the next one.
  const std::vector<SummaryRow> hours(size % 8 == 0 ? 2 : 1, hour);
  std::vector<std::string> records;
  SendThermalHours(hours, wmi, [&](const PcLogPerformanceSamplesAsCDM& record) {
    zt::fuzz::CheckRecord(record);
    records.push_back(record.SerializeAsString());
  });
  zt::fuzz::Require(records.empty() || records.size() == hours.size(), "hours that are alike are all sent or none");
  zt::fuzz::Require(records.empty() || records.front() == records.back(), "an hour leaves nothing for the next one");
  return 0;
}
