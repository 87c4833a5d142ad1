#include "store/sample_database.h"

#include <iterator>
#include <string_view>
#include <utility>

#include "store/sample_copies.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr std::string_view kSourceColumn = "source";
constexpr int kBusyTimeoutMs = 5000;
constexpr int kNoWait = 0;
constexpr int kPrimaryCodeMask = 0xFF;

// Null when the file cannot be opened. It is opened for reading only where it cannot be written.
Database Open(const std::string& path, int busy_timeout_ms = kBusyTimeoutMs) {
  sqlite3* handle = nullptr;
  const int outcome = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  Database database(handle);
  if (outcome != SQLITE_OK) return nullptr;
  sqlite3_busy_timeout(handle, busy_timeout_ms);
  return database;
}

int FindColumn(sqlite3_stmt* statement, std::string_view name) {
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    const char* column = sqlite3_column_name(statement, i);
    if (column != nullptr && column == name) return i;
  }
  return -1;
}

SummaryRow ReadRow(sqlite3_stmt* statement, int source_column) {
  SummaryRow row;
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    const char* name = sqlite3_column_name(statement, i);
    const char* text = ColumnText(statement, i);
    if (i != source_column && name != nullptr && text != nullptr) row[name] = text;
  }
  return row;
}

// Adds the query's rows to `result` as far as it gets; returns what ended it, SQLITE_DONE at its end.
int ReadRows(sqlite3* database, const std::string& query_text, SummaryRowsBySource* result) {
  const Statement query = Prepare(database, query_text);
  if (!query) return sqlite3_errcode(database);
  const int source_column = FindColumn(query.get(), kSourceColumn);
  if (source_column < 0) return SQLITE_MISUSE;
  int outcome = SQLITE_ROW;
  while ((outcome = sqlite3_step(query.get())) == SQLITE_ROW) {
    const char* source = ColumnText(query.get(), source_column);
    (*result)[source == nullptr ? "" : source].push_back(ReadRow(query.get(), source_column));
  }
  return outcome;
}

enum class CopiesOutcome { kSummarised, kBusy, kFailed };

CopiesOutcome FailureOf(int code) {
  return (code & kPrimaryCodeMask) == SQLITE_BUSY ? CopiesOutcome::kBusy : CopiesOutcome::kFailed;
}

CopiesOutcome RunSummaryQueryOnCopies(const std::string& path, SummaryRowsBySource* result) {
  const Database database = Open(path);
  if (!database) return CopiesOutcome::kFailed;
  if (!MakeSampleCopies(database.get())) return FailureOf(sqlite3_errcode(database.get()));
  const int end = ReadRows(database.get(), kSummaryQuery, result);
  // An error of the query's own, such as bytes where JSON wants a text, ends it over the tables just so.
  const bool same_over_tables = end == SQLITE_DONE || end == SQLITE_ERROR;
  return same_over_tables ? CopiesOutcome::kSummarised : FailureOf(end);
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
  int busy_timeout_ms = kBusyTimeoutMs;
  if (query_text == kSummaryQuery) {
    SummaryRowsBySource rows;
    const CopiesOutcome outcome = RunSummaryQueryOnCopies(db_path, &rows);
    if (outcome == CopiesOutcome::kSummarised) return Append(std::move(rows), result);
    // The time to wait for a writer is used up.
    if (outcome == CopiesOutcome::kBusy) busy_timeout_ms = kNoWait;
  }
  // A connection of its own: the failed one may hold copies, or a transaction.
  const Database database = Open(db_path, busy_timeout_ms);
  if (database) ReadRows(database.get(), query_text, result);
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
