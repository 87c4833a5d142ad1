#include "store/sample_database.h"

#include <chrono>
#include <iterator>
#include <utility>

#include "store/linear_summary.h"
#include "store/lock_patience.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"
#include "store/summary_rows.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// As long as a summary may keep the host waiting for a writer. Nothing else waits: what cannot be counted or deleted at
// once is left to the next cycle. A delete that waited would delete what that writer has just added.
constexpr std::chrono::milliseconds kPatience(200);

// Sorting and the connection's own tables go to files once they outgrow SQLite's page cache of 2 MB: memory does not
// grow with the backlog. SQLite has these files removed by the system when they are closed, however the process ends.
constexpr const char* kLimitMemory = "PRAGMA temp_store=FILE;";

// Null when the file cannot be opened. It is opened for reading only where it cannot be written. Waits for nobody.
Database Open(const std::string& path) {
  sqlite3* handle = nullptr;
  const int outcome = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  Database database(handle);
  return outcome == SQLITE_OK ? std::move(database) : nullptr;
}

Database OpenForSummary(const std::string& path, LockPatience& patience) {
  Database database = Open(path);
  if (!database) return nullptr;
  patience.GiveTo(database.get());
  Run(database.get(), kLimitMemory);
  return database;
}

void Append(SummaryRowsBySource&& rows, SummaryRowsBySource* result) {
  for (auto& [source, added] : rows) {
    auto& all = (*result)[source];
    all.insert(all.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
  }
}

}  // namespace

void QuerySampleSummaries(const std::string& db_path, const std::string& query_text, SummaryRowsBySource* result) {
  if (result == nullptr) return;
  LockPatience patience(kPatience);
  if (query_text == kSummaryQuery) {
    const Database database = OpenForSummary(db_path, patience);
    SummaryRowsBySource rows;
    if (database && LinearSummary(database.get()).Run(&rows)) return Append(std::move(rows), result);
  }
  // A connection of its own: on the failed one the tables' names mean something else.
  const Database database = OpenForSummary(db_path, patience);
  const Statement query = database ? Prepare(database.get(), query_text) : nullptr;
  if (query) ReadSummaryRows(query.get(), result);
}

bool SampleTableHasRows(const std::string& db_path, const std::string& table) {
  const Database database = Open(db_path);
  if (!database) return false;
  const Statement count = Prepare(database.get(), "SELECT COUNT(*) FROM \"" + table + "\";");
  return count && sqlite3_step(count.get()) == SQLITE_ROW && sqlite3_column_int(count.get(), 0) > 0;
}

void DeleteSampleRows(const std::string& db_path, const std::vector<std::string>& tables) {
  const Database database = Open(db_path);
  if (!database) return;
  for (const std::string& table : tables) Run(database.get(), "DELETE FROM " + table + ";");
}

}  // namespace zt::telemetry::collector::performancesamples
