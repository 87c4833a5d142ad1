#include "simulation/machine.h"

#include <algorithm>
#include <cstddef>

#include "simulation/query_log.h"
#include "simulation/tick_counter.h"
#include "simulation/vendor_record.h"

namespace zt::simulation {
namespace {

struct State {
  Machine machine;
  std::vector<std::string> queries;
  std::vector<std::uint64_t> matching_executions;  // of each entry of wmi.failures
  std::size_t tick_counts_taken = 0;
  VendorRecord vendor_record;
};

State& Current() {
  static State state;
  return state;
}

bool IsDue(const WmiFailure& failure, std::uint64_t executions_before) {
  if (executions_before < failure.after) return false;
  return !failure.times || executions_before - failure.after < *failure.times;
}

}  // namespace

const Machine& CurrentMachine() {
  return Current().machine;
}

void UseMachine(Machine machine) {
  State state;
  state.matching_executions.resize(machine.wmi.failures.size());
  state.machine = std::move(machine);
  Current() = std::move(state);
}

std::vector<std::string> RecordedQueries() {
  return Current().queries;
}

std::optional<Failure> RecordQuery(const std::string& wql) {
  State& state = Current();
  state.queries.push_back(wql);
  std::optional<Failure> result;
  const std::vector<WmiFailure>& failures = state.machine.wmi.failures;
  for (std::size_t i = 0; i < failures.size(); ++i) {
    if (wql.find(failures[i].query_contains) == std::string::npos) continue;
    const std::uint64_t executions_before = state.matching_executions[i]++;
    if (!result && IsDue(failures[i], executions_before)) result = Failure{failures[i].status};
  }
  return result;
}

std::uint64_t TakeTickCount() {
  State& state = Current();
  const std::vector<std::uint64_t>& tick_counts = state.machine.session.tick_counts_ms;
  if (tick_counts.empty()) return 0;
  return tick_counts[std::min(state.tick_counts_taken++, tick_counts.size() - 1)];
}

VendorRecord& CurrentVendorRecord() {
  return Current().vendor_record;
}

}  // namespace zt::simulation
