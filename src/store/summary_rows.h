#pragma once

#include <sqlite3.h>

#include "store/sample_database.h"

namespace zt::telemetry::collector::performancesamples {

/// Runs a query and adds its rows to `rows` as far as it gets; returns what ended it, SQLITE_DONE at its end.
int ReadSummaryRows(sqlite3_stmt* query, SummaryRowsBySource* rows);

}  // namespace zt::telemetry::collector::performancesamples
