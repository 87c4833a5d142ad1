// Whole sample databases. What the collector makes of each is compared with what the query gives as it stands, sent,
// and deleted.
#include <sqlite3.h>

#include <optional>
#include <string>

#include "checked_record.h"
#include "forgetful_machine.h"
#include "sample_script.h"
#include "sqlite_memory.h"
#include "store/linear_summary.h"
#include "store/network_summary.h"
#include "store/sample_database.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"
#include "store/thermal_summary.h"
#include "zt/shared/wmi/wmi_client.h"

namespace {

using namespace zt::telemetry::collector::performancesamples;
using zt::fuzz::Require;
using zt::fuzz::Shape;
using zt::fuzz::WrittenTables;

// Memory that connections of one process share by its name, as long as one of them is open.
constexpr char kPath[] = "/ssm.db";

// SQLite's own, with a clock that stands: a sample may say "now".
int StandingClock(sqlite3_vfs* /*vfs*/, sqlite3_int64* milliseconds) {
  constexpr sqlite3_int64 kMoment = 212'000'000'000'000;  // since noon of the day on which SQLite's calendar begins
  *milliseconds = kMoment;
  return SQLITE_OK;
}

bool UseDatabasesInMemory() {
  if (!zt::fuzz::UseFastMemory()) return false;
  static sqlite3_vfs memory = *sqlite3_vfs_find("memdb");
  memory.zName = "zt-memory";
  memory.xCurrentTimeInt64 = &StandingClock;
  return sqlite3_vfs_register(&memory, /*makeDflt=*/1) == SQLITE_OK;
}

Database MakeDatabase() {
  sqlite3* handle = nullptr;
  sqlite3_open(kPath, &handle);
  return Database(handle);
}

SummaryRowsBySource Query(const std::string& query_text) {
  SummaryRowsBySource rows;
  QuerySampleSummaries(kPath, query_text, &rows);
  return rows;
}

// Nothing where the query is run as it stands, which may take rows in the order of an index.
std::optional<SummaryRowsBySource> QueryFast() {
  const Database database = MakeDatabase();
  SummaryRowsBySource rows;
  if (!LinearSummary(database.get()).Run(&rows)) return std::nullopt;
  return rows;
}

void Show(const char* which, const SummaryRowsBySource& rows) {
  std::fprintf(stderr, "%s:\n", which);
  for (const auto& [source, of_source] : rows) {
    for (const SummaryRow& row : of_source) {
      std::fprintf(stderr, "  %s\n", source.c_str());
      for (const auto& [name, text] : row) std::fprintf(stderr, "    %s = %s\n", name.c_str(), text.c_str());
    }
  }
}

void RequireAlike(const SummaryRowsBySource& left, const SummaryRowsBySource& right, const char* promise) {
  if (left == right) return;
  Show("one", left);
  Show("the other", right);
  Require(false, promise);
}

void SendHours(const SummaryRowsBySource& rows) {
  const auto check = [](const PcLogPerformanceSamplesAsCDM& record) { zt::fuzz::CheckRecord(record); };
  zt::shared::wmi::WMIClient wmi(zt::shared::wmi::kSystemNamespace);
  const auto thermal = rows.find("thermal");
  if (thermal != rows.end()) SendThermalHours(thermal->second, wmi, check);
  const auto network = rows.find("network");
  if (network != rows.end()) SendNetworkHours(network->second, check);
}

// No trigger, and a table of which one can delete.
bool CanBeEmptied(Shape shape) {
  return shape != Shape::kAbsent && shape != Shape::kView && shape != Shape::kGuarded;
}

void DeleteRows(const WrittenTables& tables, const SummaryRowsBySource& rows) {
  constexpr const char* kSources[] = {"thermal", "network"};
  for (const zt::fuzz::Table table : {zt::fuzz::kThermal, zt::fuzz::kNetwork}) {
    const char* const name = zt::fuzz::kTableNames[table];
    const bool had_rows = SampleTableHasRows(kPath, name);
    Require(had_rows || !rows.contains(kSources[table]), "an hour has samples");
    DeleteSampleRows(kPath, {name});
    const bool has_rows = SampleTableHasRows(kPath, name);
    Require(has_rows == (had_rows && !CanBeEmptied(tables.shapes[table])), "a table of samples is empty afterwards");
  }
}

zt::simulation::Machine MachineWithClock() {
  zt::simulation::Machine machine;
  machine.clock = {1772893242, -180, -120};
  return machine;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool in_memory = UseDatabasesInMemory();
  Require(in_memory, "SQLite takes another place for its files");
  static zt::fuzz::ForgetfulMachine machine(MachineWithClock());
  machine.Use();
  const Database database = MakeDatabase();
  const WrittenTables tables = zt::fuzz::WriteDatabase(database.get(), {data, size});
  const SummaryRowsBySource rows = Query(kSummaryQuery);
  RequireAlike(rows, Query(std::string(kSummaryQuery) + "\n"), "the summary is what the query gives as it stands");
  if (tables.shapes[zt::fuzz::kThermal] == Shape::kIndexed || tables.shapes[zt::fuzz::kNetwork] == Shape::kIndexed) {
    zt::fuzz::AddIndexes(database.get(), tables);
    RequireAlike(rows, QueryFast().value_or(rows), "an index changes nothing");
  }
  SendHours(rows);
  // Six connections, each of which reads the schema: not for every input.
  if (size % 4 == 0) DeleteRows(tables, rows);
  return 0;
}
