// The summary query on backlogs of days to months, as the collector runs it and as it stands.
#include <benchmark/benchmark.h>

#include "backlog.h"
#include "memory.h"
#include "store/sample_database.h"
#include "store/summary_query.h"
#include "support/temporary_folder.h"

namespace zt::bench {
namespace {

namespace store = telemetry::collector::performancesamples;

void Summarise(benchmark::State& state, const std::string& query_text) {
  const tests::TemporaryFolder folder;
  const std::string path = folder.File("ssm.db");
  WriteBacklog(path, static_cast<int>(state.range(0)));
  ResetPeakMemory();
  std::size_t hours = 0;
  for (auto unused : state) {
    store::SummaryRowsBySource rows;
    store::QuerySampleSummaries(path, query_text, &rows);
    hours = rows["network"].size();
  }
  state.counters["hours"] = static_cast<double>(hours);
  state.counters["peak_MiB"] = PeakMemoryMib();
}

void SummaryAsCollected(benchmark::State& state) {
  Summarise(state, store::kSummaryQuery);
}
BENCHMARK(SummaryAsCollected)->ArgName("days")->Arg(1)->Arg(7)->Arg(30)->Arg(90)->Unit(benchmark::kMillisecond);

/// The same query without the collector's preparation, which goes by the exact text. 30 days take minutes.
void SummaryPlain(benchmark::State& state) {
  Summarise(state, std::string(store::kSummaryQuery) + "\n");
}
BENCHMARK(SummaryPlain)->ArgName("days")->Arg(1)->Arg(7)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
