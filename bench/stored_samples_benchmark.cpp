// From a backlog of stored samples to the records that the host receives and the emptied tables; beside it what the
// SQLite shell needs for the query alone, and the floor: reading every row once. "floors": how many floors of the same
// run the whole took, in processor time.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "backlog.h"
#include "collector/performance_samples.h"
#include "counting_sink.h"
#include "memory.h"
#include "simulation/machine.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"
#include "support/temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::bench {
namespace {

namespace collector = telemetry::collector::performancesamples;
namespace store = collector;

constexpr const char* kRequestedCollection = R"({"eventType": 50})";

/// What any summary has to do at least: read each row, with the two date calls that the query makes for it.
constexpr const char* kReadEveryRow =
    "SELECT strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)), "
    "strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)), * FROM ";
constexpr const char* kTables[] = {"ThermalData", "NetworkData"};

bool ReadEveryRow(sqlite3* database) {
  for (const char* table : kTables) {
    const store::Statement rows = store::Prepare(database, std::string(kReadEveryRow) + table);
    int outcome = SQLITE_ROW;
    while (rows && outcome == SQLITE_ROW) outcome = sqlite3_step(rows.get());
    if (outcome != SQLITE_DONE) return false;
  }
  return true;
}

/// Processor time of one reading, in seconds.
double TimeOfReadingEveryRow(const std::string& path) {
  sqlite3* handle = nullptr;
  sqlite3_open(path.c_str(), &handle);
  const store::Database database(handle);
  const std::clock_t start = std::clock();
  return ReadEveryRow(handle) ? static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC : 0;
}

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
  double floor = 0;
  double whole = 0;
  for (auto unused : state) {
    state.PauseTiming();
    backlog.Restore();
    floor += TimeOfReadingEveryRow(backlog.Full());
    const int before = sink->Records();
    const std::clock_t start = std::clock();
    state.ResumeTiming();
    samples.Execute(kRequestedCollection, outcome.data());
    whole += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    records = sink->Records() - before;
  }
  state.counters["records"] = records;
  state.counters["peak_MiB"] = PeakMemoryMib();
  state.counters["floors"] = whole / floor;
  telemetry::common::RegisterTelemetrySink(nullptr);
}
BENCHMARK(SummariseSendAndDelete)->ArgName("days")->Arg(1)->Arg(7)->Arg(30)->Arg(90)->Unit(benchmark::kMillisecond);

void ReadEveryRowOnce(benchmark::State& state) {
  const Backlog backlog(static_cast<int>(state.range(0)));
  sqlite3* handle = nullptr;
  sqlite3_open(backlog.Full().c_str(), &handle);
  const store::Database database(handle);
  for (auto unused : state) {
    if (!ReadEveryRow(handle)) state.SkipWithError("the rows could not be read");
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
