#include "store/summary_rows.h"

#include <string_view>
#include <utility>

#include "store/sqlite_handles.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr std::string_view kSourceColumn = "source";

int FindColumn(sqlite3_stmt* statement, std::string_view name) {
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    const char* column = sqlite3_column_name(statement, i);
    // coverage: a query in UTF-8 has its names at hand, so that none is missing for want of memory
    if (column != nullptr && column == name) return i;
  }
  return -1;
}

SummaryRow ReadRow(sqlite3_stmt* statement, int source_column) {
  SummaryRow row;
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    const char* name = sqlite3_column_name(statement, i);
    const char* text = ColumnText(statement, i);
    // coverage: as above, there is a name
    if (i != source_column && name != nullptr && text != nullptr) row[name] = text;
  }
  return row;
}

}  // namespace

int ReadSummaryRows(sqlite3_stmt* query, SummaryRowsBySource* rows) {
  const int source_column = FindColumn(query, kSourceColumn);
  if (source_column < 0) return SQLITE_MISUSE;
  int outcome = SQLITE_ROW;
  while ((outcome = sqlite3_step(query)) == SQLITE_ROW) {
    const char* source = ColumnText(query, source_column);
    (*rows)[source == nullptr ? "" : source].push_back(ReadRow(query, source_column));
  }
  return outcome;
}

}  // namespace zt::telemetry::collector::performancesamples
