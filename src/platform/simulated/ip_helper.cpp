#include "platform/ip_helper.h"

#include <limits>

#include "platform/simulated/answers.h"
#include "platform/simulated/disturbed.h"
#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

std::optional<TcpCounters> CountersOf(const char* call,
                                      const simulation::OptionalAnswer<simulation::TcpCounters>& stated) {
  const Disturbance met = simulation::Announce(call, {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) return TcpCounters{kAbsurdFigure, kAbsurdFigure, kAbsurdFigure};
  const std::optional<simulation::TcpCounters> counters = simulation::Given(stated);
  if (!counters) return std::nullopt;
  return TcpCounters{counters->established, counters->attempt_fails, counters->errors_in};
}

}  // namespace

std::optional<InterfaceCounters> CountersOfInterface(std::uint32_t index) {
  const Disturbance met = simulation::Announce("GetIfEntry", {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) return InterfaceCounters{kAbsurdFigure, kAbsurdFigure};
  const auto& all = simulation::CurrentMachine().network.interface_counters;
  const auto found = all.find(index);
  if (found == all.end()) return std::nullopt;
  const std::optional<simulation::InterfaceCounters> counters = simulation::Given(found->second);
  if (!counters) return std::nullopt;
  return InterfaceCounters{counters->in_octets, counters->out_octets};
}

std::optional<TcpCounters> TcpV4Counters() {
  return CountersOf("GetTcpStatistics", simulation::CurrentMachine().network.tcp_v4);
}

std::optional<TcpCounters> TcpV6Counters() {
  return CountersOf("GetTcpStatisticsEx", simulation::CurrentMachine().network.tcp_v6);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
