// A full collection cycle on a simulated laptop, from the host's call to the hand-over, without stored samples.
#include <benchmark/benchmark.h>

#include <memory>

#include "backlog.h"
#include "collector/performance_samples.h"
#include "counting_sink.h"
#include "memory.h"
#include "simulation/profile.h"
#include "support/temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::bench {
namespace {

constexpr const char* kRequestedCollection = R"({"eventType": 50})";

void Cycle(benchmark::State& state) {
  const tests::TemporaryFolder folder;
  const bool with_empty_tables = state.range(0) != 0;
  if (with_empty_tables) WriteBacklog(folder.File("ssm.db"), 0);
  shared::TelemetryStorage::SetDefaultDBPath(folder.Utf8());
  simulation::UseMachine(simulation::ReadShippedProfile("convertible-laptop"));
  const auto sink = std::make_shared<CountingSink>();
  telemetry::common::RegisterTelemetrySink(sink);
  telemetry::collector::performancesamples::PerformanceSamples collector;
  std::string outcome(shared::plugin::IPluginModule::kResultCapacity, '\0');

  collector.Execute(kRequestedCollection, outcome.data());
  const int records_of_a_cycle = sink->Records();
  for (auto unused : state) collector.Execute(kRequestedCollection, outcome.data());

  if (records_of_a_cycle == 0) state.SkipWithError("the cycle handed nothing over");
  state.counters["records"] = records_of_a_cycle;
  state.counters["peak_MiB"] = PeakMemoryMib();
  telemetry::common::RegisterTelemetrySink(nullptr);
}
BENCHMARK(Cycle)->ArgName("database")->Arg(0)->Arg(1)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
