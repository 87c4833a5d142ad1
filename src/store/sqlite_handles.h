#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

/// Owners of what SQLite hands out.
namespace zt::telemetry::collector::performancesamples {

struct DatabaseCloser {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;

struct StatementFinalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

/// The first statement of `sql`, ready to run; null when it cannot be prepared.
inline Statement Prepare(sqlite3* database, const std::string& sql) {
  constexpr int kUpToNul = -1;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, sql.c_str(), kUpToNul, &statement, nullptr);
  return Statement(statement);
}

/// Runs every statement of `sql`; false when one fails.
inline bool Run(sqlite3* database, const std::string& sql) {
  return sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

/// Text of a column of the present row up to its first NUL, null for NULL. Valid until the next step.
inline const char* ColumnText(sqlite3_stmt* statement, int column) {
  return reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
}

}  // namespace zt::telemetry::collector::performancesamples
