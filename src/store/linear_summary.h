#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <string>

#include "store/hour_windows.h"
#include "store/repetition_filter.h"
#include "store/sample_database.h"

namespace zt::telemetry::collector::performancesamples {

/// The summary query in time proportional to the rows instead of to their square, with the bytes that it gives over the
/// tables. Where the query leaves an order open it is that of the rows in the tables, whatever indexes they have.
///
/// All that it reads is as of one moment. It copies no samples; its own data are the distinct profiles of each hour.
class LinearSummary {
 public:
  /// The connection is of no further use afterwards.
  explicit LinearSummary(sqlite3* database) : database_(database) {}
  LinearSummary(const LinearSummary&) = delete;
  LinearSummary& operator=(const LinearSummary&) = delete;

  /// False when a step fails and for tables of another kind than usual (views, virtual ones, ...); `rows` is of no use
  /// then.
  bool Run(SummaryRowsBySource* rows);

 private:
  enum Table : std::size_t { kThermal, kNetwork, kTables };

  struct Source {
    bool has_row_numbers = false;
    HourWindows windows;
    bool has_rows = false;
    RowRange shown;
  };

  bool Inspect(Table table);
  bool ReadHours(Table table);
  bool ReadSamples();
  bool Show(Table table);
  std::vector<RowRange> Ranges(Table table) const;
  bool RunInOneTransaction(SummaryRowsBySource* rows);
  int RunQuery(SummaryRowsBySource* rows);

  sqlite3* database_;
  RepetitionFilter filter_;
  std::array<Source, kTables> sources_;
};

}  // namespace zt::telemetry::collector::performancesamples
