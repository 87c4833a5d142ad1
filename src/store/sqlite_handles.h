#pragma once

#include <sqlite3.h>

#include <memory>
#include <new>
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
inline Statement Prepare(sqlite3* database, const char* sql) {
  constexpr int kUpToNul = -1;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, sql, kUpToNul, &statement, nullptr);
  return Statement(statement);
}
inline Statement Prepare(sqlite3* database, const std::string& sql) {
  return Prepare(database, sql.c_str());
}

/// Runs every statement of `sql`; false when one fails.
inline bool Run(sqlite3* database, const char* sql) {
  return sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}
inline bool Run(sqlite3* database, const std::string& sql) {
  return Run(database, sql.c_str());
}

/// Text of a column of the present row up to its first NUL, null for NULL. Valid until the next step. Throws
/// `std::bad_alloc` for a value that SQLite has no memory to write as a text: it would pass for NULL.
inline const char* ColumnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (text == nullptr && sqlite3_errcode(sqlite3_db_handle(statement)) == SQLITE_NOMEM) throw std::bad_alloc();
  return text;
}

}  // namespace zt::telemetry::collector::performancesamples
