#include "store/sample_database.h"

#include <new>
#include <utility>

#include "store/linear_summary.h"
#include "store/lock_patience.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"
#include "store/summary_rows.h"
#include "store/work_limit.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// Sorting and the connection's own tables go to files once they outgrow SQLite's page cache of 2 MB: memory does not
// grow with the backlog. SQLite has these files removed by the system when they are closed, however the process ends.
constexpr const char* kLimitMemory = "PRAGMA temp_store=FILE;";

// Whoever can write the file says what its tables are: its views and triggers get SQLite's harmless functions alone,
// and none that the host has added to the connections of its process.
void DistrustSchema(sqlite3* database) {
  constexpr int kOff = 0;
  sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, kOff, nullptr);
}

// Null when the file cannot be opened. It is opened for reading only where it cannot be written. Waits for nobody:
// what cannot be counted or deleted at once is left to the next cycle. A delete that waited for a writer would delete
// what that writer has just added.
Database Open(const std::string& path, WorkLimit& work) {
  sqlite3* handle = nullptr;
  const int outcome = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  Database database(handle);
  if (outcome != SQLITE_OK) return nullptr;
  DistrustSchema(database.get());
  work.GiveTo(database.get());
  return database;
}

Database OpenForSummary(const std::string& path, LockPatience& patience, WorkLimit& work) {
  Database database = Open(path, work);
  if (!database) return nullptr;
  patience.GiveTo(database.get());
  Run(database.get(), kLimitMemory);
  return database;
}

SummaryRowsBySource Summarise(const std::string& db_path, const std::string& query_text, const StoreLimits& limits) {
  LockPatience patience(limits.summary_locks);
  WorkLimit work(limits.summary_work);
  SummaryRowsBySource rows;
  const bool samples = query_text == kSummaryQuery;
  if (samples) {
    const Database database = OpenForSummary(db_path, patience, work);
    if (database && LinearSummary(database.get()).Run(&rows)) return rows;
  }
  // A connection of its own: on the failed one the tables' names mean something else.
  const Database database = OpenForSummary(db_path, patience, work);
  const Statement query = database ? Prepare(database.get(), query_text) : nullptr;
  const int end = query ? ReadSummaryRows(query.get(), &rows) : SQLITE_DONE;
  // A summary that broke off lacks hours, whose samples would be deleted with those of the others.
  if (end == SQLITE_INTERRUPT || (samples && end != SQLITE_DONE)) rows.clear();
  return rows;
}

// All or nothing: a half of the rows would pass for all of them.
void Append(SummaryRowsBySource&& rows, SummaryRowsBySource* result) {
  for (const auto& [source, earlier] : *result) {
    auto& all = rows[source];
    all.insert(all.begin(), earlier.begin(), earlier.end());
  }
  result->swap(rows);
}

}  // namespace

void QuerySampleSummaries(const std::string& db_path, const std::string& query_text, SummaryRowsBySource* result,
                          const StoreLimits& limits) {
  if (result == nullptr) return;
  try {
    Append(Summarise(db_path, query_text, limits), result);
  } catch (const std::bad_alloc&) {
    // As any other failure.
  }
}

bool SampleTableHasRows(const std::string& db_path, const std::string& table, const StoreLimits& limits) {
  try {
    WorkLimit work(limits.table_work);
    const Database database = Open(db_path, work);
    if (!database) return false;
    const Statement count = Prepare(database.get(), "SELECT COUNT(*) FROM \"" + table + "\";");
    return count && sqlite3_step(count.get()) == SQLITE_ROW && sqlite3_column_int(count.get(), 0) > 0;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void DeleteSampleRows(const std::string& db_path, const std::vector<std::string>& tables, const StoreLimits& limits) {
  try {
    WorkLimit work(limits.table_work);
    const Database database = Open(db_path, work);
    if (!database) return;
    for (const std::string& table : tables) Run(database.get(), "DELETE FROM " + table + ";");
  } catch (const std::bad_alloc&) {
    // The rows that are left are sent again.
  }
}

}  // namespace zt::telemetry::collector::performancesamples
