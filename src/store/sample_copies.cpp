#include "store/sample_copies.h"

#include <string>
#include <string_view>

#include "store/sqlite_handles.h"
#include "store/summary_query.h"

// The query looks for the Wi-Fi profiles of each hour and interface by a scan of all network samples. An unqualified
// table name means a temporary table first, so the unchanged query finds the copies, and with them an index on exactly
// what it compares. The index must not hold the profile columns too: it would change the order of the profiles.
namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr const char* kThermalTable = "ThermalData";
constexpr const char* kNetworkTable = "NetworkData";
constexpr const char* kIndexByHourAndInterface =
    "CREATE INDEX temp.zt_network_by_hour_and_interface ON NetworkData("
    "strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)), interface_device_id);";

// A transaction reads nothing, and thus holds nothing still, before its first statement does.
constexpr const char* kBeginToRead = "BEGIN; SELECT 1 FROM main.sqlite_master LIMIT 1;";

// Columns of the answers to EXPLAIN QUERY PLAN and PRAGMA table_list.
constexpr int kPlanDetail = 3;
constexpr int kTableType = 2;

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char character : name) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

// The copies give groups and profiles in the order of the rows in the table. The query over the tables themselves does
// so too unless it walks an index of theirs, which the plan shows by "USING".
bool PlanKeepsTheOrderOfTheRows(sqlite3* database) {
  const Statement plan = Prepare(database, std::string("EXPLAIN QUERY PLAN ") + kSummaryQuery);
  if (!plan) return false;
  int outcome = SQLITE_ROW;
  while ((outcome = sqlite3_step(plan.get())) == SQLITE_ROW) {
    const char* detail = ColumnText(plan.get(), kPlanDetail);
    if (detail == nullptr || std::string_view(detail).find(" USING ") != std::string_view::npos) return false;
  }
  return outcome == SQLITE_DONE;
}

// A view or a virtual table has no rows of its own whose order a copy could keep.
bool IsOrdinaryTable(sqlite3* database, const std::string& table) {
  const Statement list = Prepare(database, "PRAGMA main.table_list(" + Quoted(table) + ");");
  if (!list || sqlite3_step(list.get()) != SQLITE_ROW) return false;
  const char* type = ColumnText(list.get(), kTableType);
  return type != nullptr && std::string_view(type) == "table";
}

// Name and collation, all that decides how a stored value compares. A type would only convert values on their way in,
// which their own table has done already. Empty on failure.
std::string ColumnDefinition(sqlite3* database, const std::string& table, const char* name) {
  const char* collation = nullptr;
  if (name == nullptr || sqlite3_table_column_metadata(database, "main", table.c_str(), name, nullptr, &collation,
                                                       nullptr, nullptr, nullptr) != SQLITE_OK) {
    return {};
  }
  return collation == nullptr ? Quoted(name) : Quoted(name) + " COLLATE " + Quoted(collation);
}

// Definitions of all columns, with commas; empty on failure. Generated columns become plain ones.
std::string ColumnDefinitions(sqlite3* database, const std::string& table) {
  const Statement columns = Prepare(database, "SELECT * FROM main." + Quoted(table) + ";");
  std::string definitions;
  for (int i = 0; i < sqlite3_column_count(columns.get()); ++i) {
    const std::string definition = ColumnDefinition(database, table, sqlite3_column_name(columns.get(), i));
    if (definition.empty()) return {};
    definitions += (i == 0 ? "" : ", ") + definition;
  }
  return definitions;
}

bool CopyTable(sqlite3* database, const std::string& table) {
  if (!IsOrdinaryTable(database, table)) return false;
  const std::string definitions = ColumnDefinitions(database, table);
  if (definitions.empty()) return false;
  const std::string name = Quoted(table);
  // Without an index, so that the copy has the rows in the table's own order.
  return Run(database, "CREATE TEMP TABLE " + name + "(" + definitions + ");") &&
         Run(database, "INSERT INTO temp." + name + " SELECT * FROM main." + name + " NOT INDEXED;");
}

}  // namespace

bool MakeSampleCopies(sqlite3* database) {
  // One transaction: both tables and their definitions as of one moment. It ends before the index and the query, which
  // take longer than the copies and would keep writers waiting.
  return Run(database, kBeginToRead) && PlanKeepsTheOrderOfTheRows(database) && CopyTable(database, kThermalTable) &&
         CopyTable(database, kNetworkTable) && Run(database, "COMMIT;") && Run(database, kIndexByHourAndInterface);
}

}  // namespace zt::telemetry::collector::performancesamples
