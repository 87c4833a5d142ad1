#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

/// Access to the host's database of raw samples, which other components of the host create and fill. Paths are UTF-8.
/// Each call opens the file itself and keeps nothing open. A file that is not there is not created. No failure is
/// reported: what cannot be read has no rows, what cannot be deleted stays.
namespace zt::telemetry::collector::performancesamples {

/// One row of a query: text by column name. A column that is NULL is absent.
using SummaryRow = std::map<std::string, std::string>;

/// Rows by the text of their "source" column (empty for NULL), in the order of the query. The column itself is in no
/// row.
using SummaryRowsBySource = std::map<std::string, std::vector<SummaryRow>>;

/// As long as a summary waits for other components' locks, in all. Nothing else waits for one.
inline constexpr std::chrono::milliseconds kSummaryPatience{200};

/// As long as a summary works. Three months of samples take about a second; a query that is not through by then has no
/// rows.
inline constexpr std::chrono::milliseconds kSummaryWorkLimit{20'000};

/// As long as a table is counted, and as tables are emptied.
inline constexpr std::chrono::milliseconds kTableWorkLimit{5'000};

/// How long each call may take.
struct StoreLimits {
  std::chrono::milliseconds summary_locks = kSummaryPatience;
  std::chrono::milliseconds summary_work = kSummaryWorkLimit;
  std::chrono::milliseconds table_work = kTableWorkLimit;
};

/// Runs one query and adds its rows to `result`. A query without a column "source" adds nothing. A row's texts end at
/// their first NUL. `kSummaryQuery` runs in time proportional to the stored rows over ordinary tables, and adds all of
/// its rows or none; of another query those before a failure are added, and none of one that takes too long.
void QuerySampleSummaries(const std::string& db_path, const std::string& query_text, SummaryRowsBySource* result,
                          const StoreLimits& limits = {});

/// Whether `table` holds at least one row; false as well when that cannot be told.
bool SampleTableHasRows(const std::string& db_path, const std::string& table, const StoreLimits& limits = {});

/// Empties each table in turn, also after one that fails.
void DeleteSampleRows(const std::string& db_path, const std::vector<std::string>& tables,
                      const StoreLimits& limits = {});

}  // namespace zt::telemetry::collector::performancesamples
