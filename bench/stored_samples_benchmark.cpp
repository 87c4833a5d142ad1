// From a backlog of stored samples to the records that the host receives and the emptied tables; beside it what the
// SQLite shell needs for the query alone, and the floor: reading every row once.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "backlog.h"
#include "collector/performance_samples.h"
#include "counting_sink.h"
#include "memory.h"
#include "simulation/machine.h"
#include "store/summary_query.h"
#include "support/temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::bench {
namespace {

namespace collector = telemetry::collector::performancesamples;

constexpr const char* kRequestedCollection = R"({"eventType": 50})";

/// What any summary has to do at least: each row's hour, as the query computes it for its grouping.
constexpr const char* kReadEveryRow =
    "SELECT COUNT(strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19))) FROM ThermalData UNION ALL "
    "SELECT COUNT(strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19))) FROM NetworkData";

class Backlog {
 public:
  explicit Backlog(int days) { WriteBacklog(Full(), days); }

  std::string Full() const { return folder_.File("full.db"); }
  const tests::TemporaryFolder& Folder() const { return folder_; }

  /// Puts the backlog back into the database that the collector empties.
  void Restore() const {
    std::filesystem::copy_file(folder_.Path() / "full.db", folder_.Path() / "ssm.db",
                               std::filesystem::copy_options::overwrite_existing);
  }

 private:
  tests::TemporaryFolder folder_;
};

void SummariseSendAndDelete(benchmark::State& state) {
  const Backlog backlog(static_cast<int>(state.range(0)));
  shared::TelemetryStorage::SetDefaultDBPath(backlog.Folder().Utf8());
  simulation::UseMachine({});
  const auto sink = std::make_shared<CountingSink>();
  telemetry::common::RegisterTelemetrySink(sink);
  collector::PerformanceSamples samples;
  std::string outcome(shared::plugin::IPluginModule::kResultCapacity, '\0');
  ResetPeakMemory();
  int records = 0;
  for (auto unused : state) {
    state.PauseTiming();
    backlog.Restore();
    const int before = sink->Records();
    state.ResumeTiming();
    samples.Execute(kRequestedCollection, outcome.data());
    records = sink->Records() - before;
  }
  state.counters["records"] = records;
  state.counters["peak_MiB"] = PeakMemoryMib();
  telemetry::common::RegisterTelemetrySink(nullptr);
}
BENCHMARK(SummariseSendAndDelete)->ArgName("days")->Arg(1)->Arg(7)->Arg(30)->Arg(90)->Unit(benchmark::kMillisecond);

void ReadEveryRowOnce(benchmark::State& state) {
  const Backlog backlog(static_cast<int>(state.range(0)));
  sqlite3* handle = nullptr;
  sqlite3_open(backlog.Full().c_str(), &handle);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(handle, &sqlite3_close);
  for (auto unused : state) {
    if (sqlite3_exec(database.get(), kReadEveryRow, nullptr, nullptr, nullptr) != SQLITE_OK) {
      state.SkipWithError("the rows could not be read");
    }
  }
}
BENCHMARK(ReadEveryRowOnce)->ArgName("days")->Arg(1)->Arg(7)->Arg(30)->Arg(90)->Unit(benchmark::kMillisecond);

/// The query as it stands in SQLite's own shell. 30 days take minutes.
void QueryInTheShell(benchmark::State& state) {
  const Backlog backlog(static_cast<int>(state.range(0)));
  std::ofstream(backlog.Folder().Path() / "query.sql") << collector::kSummaryQuery << '\n';
  const std::string command = "sqlite3 -bail '" + backlog.Full() + "' < '" + backlog.Folder().File("query.sql") +
                              "' > '" + backlog.Folder().File("rows.txt") + "'";
  for (auto unused : state) {
    if (std::system(command.c_str()) != 0) state.SkipWithError("the shell could not run the query");
  }
}
BENCHMARK(QueryInTheShell)
    ->ArgName("days")
    ->Arg(1)
    ->Arg(7)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
