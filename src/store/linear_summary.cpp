#include "store/linear_summary.h"

#include <limits>
#include <new>
#include <string_view>
#include <vector>

#include "store/hour_function.h"
#include "store/profile_table.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"
#include "store/summary_rows.h"

// The query has two costs that are none of its result's. It looks for the profiles of each hour and interface by a scan
// of all network samples: here it looks them up in a small table of those alone, and one table's name is all that is
// changed in its text. And it sorts all rows to group them: here it is run on a few hours at a time, through views that
// take the place of the tables, since the name of a view of the connection's own means that view.
namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr std::array kSampleTables = {"ThermalData", "NetworkData"};
constexpr const char* kRowNumber = "_rowid_";
// The query groups by the hour it computes, unless the table has a column of that name.
constexpr const char* kHourColumn = "hour_window";
constexpr const char* kHour = "strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19))";
constexpr std::string_view kProfileSource = "FROM NetworkData np";

// Rows of a run: enough that its start costs nothing, few enough to be sorted in the processor's own memory.
constexpr std::int64_t kRowsOfARun = 4000;

constexpr int kNoTable = -1;

// A view or a virtual table has no rows of its own whose order could be kept.
bool IsOrdinaryTable(sqlite3* database, const std::string& table) {
  constexpr int kType = 2;
  const Statement list = Prepare(database, "PRAGMA main.table_list(" + table + ");");
  if (!list || sqlite3_step(list.get()) != SQLITE_ROW) return false;
  const char* type = ColumnText(list.get(), kType);
  return type != nullptr && std::string_view(type) == "table";
}

int FindColumn(sqlite3_stmt* columns, const char* name) {
  for (int i = 0; i < sqlite3_column_count(columns); ++i) {
    if (sqlite3_stricmp(sqlite3_column_name(columns, i), name) == 0) return i;
  }
  return kNoTable;
}

// The query, with the table of profiles in the place of the samples.
std::string QueryWithProfileTable() {
  std::string query = kSummaryQuery;
  return query.replace(query.find(kProfileSource), kProfileSource.size(),
                       std::string("FROM temp.") + kProfileTable + " np");
}

// First and last row to show, as functions of SQL.
bool AddBound(sqlite3* database, const std::string& name, std::int64_t& bound) {
  const auto call = [](sqlite3_context* context, int /*count*/, sqlite3_value** /*arguments*/) {
    sqlite3_result_int64(context, *static_cast<const std::int64_t*>(sqlite3_user_data(context)));
  };
  return sqlite3_create_function_v2(database, name.c_str(), 0, SQLITE_UTF8 | SQLITE_INNOCUOUS, &bound, call, nullptr,
                                    nullptr, nullptr) == SQLITE_OK;
}

// A sample without an hour or an interface has no profiles.
bool AddProfile(sqlite3_stmt* insertion, sqlite3_stmt* sample, int first_column) {
  for (int i = 0; i < kNumberOfProfileColumns; ++i) {
    if (sqlite3_bind_value(insertion, i + 1, sqlite3_column_value(sample, first_column + i)) != SQLITE_OK) return false;
  }
  sqlite3_step(insertion);
  return sqlite3_reset(insertion) == SQLITE_OK;  // tells of a step that failed
}

}  // namespace

bool LinearSummary::Inspect(Table table) {
  if (!IsOrdinaryTable(database_, kSampleTables[table])) return false;
  const Statement columns = Prepare(database_, std::string("SELECT * FROM main.") + kSampleTables[table] + ";");
  if (!columns || FindColumn(columns.get(), kHourColumn) != kNoTable) return false;
  const Statement numbers =
      Prepare(database_, std::string("SELECT ") + kRowNumber + " FROM main." + kSampleTables[table] + ";");
  sources_[table].has_row_numbers = numbers && FindColumn(columns.get(), kRowNumber) == kNoTable;
  return true;
}

bool LinearSummary::ReadHours(Table table) {
  Source& source = sources_[table];
  filter_.Reset();
  const bool network = table == kNetwork;
  const std::string row_number = source.has_row_numbers ? kRowNumber : "0";
  const std::string compared = network ? std::string(", ") + kComparedColumns : "";
  constexpr int kHourOfRow = 1;
  constexpr int kFirstProfileColumn = 2;
  constexpr int kInterface = kFirstProfileColumn + 1;
  // Without an index, so that the rows come in the table's own order.
  const Statement samples =
      Prepare(database_, "SELECT " + row_number + ", " + kHour + ", date_time" + compared + " FROM main." +
                             kSampleTables[table] + " NOT INDEXED WHERE zt_is_news(date_time" + compared + ");");
  const Statement insertion = network ? PrepareProfileInsertion(database_) : nullptr;
  if (!samples || (network && !insertion)) return false;
  std::string last_hour;
  int outcome = SQLITE_ROW;
  while ((outcome = sqlite3_step(samples.get())) == SQLITE_ROW) {
    const char* text = ColumnText(samples.get(), kHourOfRow);
    const std::string hour = text == nullptr ? "" : text;
    if (network && text != nullptr && sqlite3_column_type(samples.get(), kInterface) != SQLITE_NULL &&
        !AddProfile(insertion.get(), samples.get(), kFirstProfileColumn)) {
      return false;
    }
    if (source.has_rows && hour == last_hour) continue;
    source.has_rows = true;
    last_hour = hour;
    if (source.has_row_numbers) {
      source.windows.Add(hour, sqlite3_column_int64(samples.get(), 0), filter_.Rows() - 1);
    }
  }
  return outcome == SQLITE_DONE;
}

bool LinearSummary::ReadSamples() {
  return filter_.AddTo(database_) && MakeProfileTable(database_) && ReadHours(kThermal) && ReadHours(kNetwork) &&
         IndexProfileTable(database_);
}

bool LinearSummary::Show(Table table) {
  Source& source = sources_[table];
  const std::string first = std::string("zt_first_of_") + kSampleTables[table];
  const std::string last = std::string("zt_last_of_") + kSampleTables[table];
  const std::string rows = source.has_row_numbers
                               ? std::string(kRowNumber) + " BETWEEN " + first + "() AND " + last + "()"
                               : first + "() < " + last + "()";
  return AddBound(database_, first, source.shown.first) && AddBound(database_, last, source.shown.last) &&
         performancesamples::Run(database_, std::string("CREATE TEMP VIEW ") + kSampleTables[table] +
                                                " AS SELECT * FROM main." + kSampleTables[table] +
                                                " NOT INDEXED WHERE " + rows + ";");
}

std::vector<RowRange> LinearSummary::Ranges(Table table) const {
  const Source& source = sources_[table];
  if (source.has_row_numbers) return source.windows.Ranges(kRowsOfARun);
  if (!source.has_rows) return {};
  return {{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}};
}

int LinearSummary::RunQuery(SummaryRowsBySource* rows) {
  const Statement query = Prepare(database_, QueryWithProfileTable());
  if (!query) return SQLITE_MISUSE;
  for (const Table table : {kThermal, kNetwork}) {
    for (const RowRange& range : Ranges(table)) {
      sources_[table].shown = range;
      const int outcome = ReadSummaryRows(query.get(), rows);
      if (outcome != SQLITE_DONE) return outcome;
      sqlite3_reset(query.get());
    }
    sources_[table].shown = {};
  }
  return SQLITE_DONE;
}

bool LinearSummary::RunInOneTransaction(SummaryRowsBySource* rows) {
  // From the first table's definition to the last row: the tables, their rows and the profiles belong together, and
  // what is added meanwhile is in none of them.
  const bool ready = performancesamples::Run(database_, "BEGIN;") && UseFastHours(database_) && Inspect(kThermal) &&
                     Inspect(kNetwork) && ReadSamples() && Show(kThermal) && Show(kNetwork);
  if (!ready) return false;
  const int end = RunQuery(rows);
  if (end == SQLITE_DONE) return true;
  // An error of the query's own, such as bytes where JSON wants a text, leaves nothing: it sorts its rows before it
  // gives the first one.
  rows->clear();
  return end == SQLITE_ERROR;
}

bool LinearSummary::Run(SummaryRowsBySource* rows) {
  try {
    return RunInOneTransaction(rows);
  } catch (const std::bad_alloc&) {
    rows->clear();
    return false;
  }
}

}  // namespace zt::telemetry::collector::performancesamples
