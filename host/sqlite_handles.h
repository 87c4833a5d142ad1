#pragma once

#include <sqlite3.h>

#include <memory>

/// Owners of what SQLite hands out.
namespace zt::telemetry::host {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

}  // namespace zt::telemetry::host
