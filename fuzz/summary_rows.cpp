// The JSON that the summary query gives for an hour of network samples.
#include <string>
#include <vector>

#include "checked_record.h"
#include "json_mutation.h"
#include "simulation/machine.h"
#include "store/network_summary.h"

namespace {

using namespace zt::telemetry::collector::performancesamples;

void UseClock() {
  zt::simulation::Machine machine;
  machine.clock = {1772893242, -180, -120};
  zt::simulation::UseMachine(std::move(machine));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool clock_is_set = (UseClock(), true);
  static_cast<void>(clock_is_set);
  const SummaryRow hour = {{"hour_window", "2026-03-07T13:00:00.000Z"},
                           {"network_info", std::string(zt::fuzz::TextOf(data, size))}};
  // Now and then the same twice: nothing of an hour may reach the next one.
  const std::vector<SummaryRow> hours(size % 8 == 0 ? 2 : 1, hour);
  std::vector<std::string> records;
  SendNetworkHours(hours, [&](const PcLogPerformanceSamplesAsCDM& record) {
    zt::fuzz::CheckRecord(record);
    records.push_back(record.SerializeAsString());
  });
  zt::fuzz::Require(records.empty() || records.size() == hours.size(), "hours that are alike are all sent or none");
  zt::fuzz::Require(records.empty() || records.front() == records.back(), "an hour leaves nothing for the next one");
  return 0;
}
