#include "store/profile_table.h"

#include <array>
#include <string>
#include <string_view>

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr const char* kSampleTable = "NetworkData";
constexpr const char* kTypes = "zt_types";
constexpr std::array kProfileColumns = {"interface_device_id", "profile_name_hash", "profile_authentication",
                                        "profile_encryption"};

// A table made from a query has the types that decide how values compare, in words that can be used again; its
// collations are lost.
std::string MakeTypes() {
  return std::string("CREATE TEMP TABLE zt_types AS SELECT ") + kComparedColumns + " FROM main.NetworkData WHERE 0;";
}

constexpr const char* kInsert = "INSERT INTO temp.zt_profiles VALUES(?1, ?2, ?3, ?4, ?5);";
constexpr const char* kIndex =
    "CREATE INDEX temp.zt_profiles_by_hour_and_interface ON zt_profiles("
    "strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)), interface_device_id);";

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char character : name) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

// Empty on failure.
std::string Definition(sqlite3* database, const char* column) {
  const char* type = nullptr;
  const char* collation = nullptr;
  const int of_types =
      sqlite3_table_column_metadata(database, "temp", kTypes, column, &type, nullptr, nullptr, nullptr, nullptr);
  const int of_samples = sqlite3_table_column_metadata(database, "main", kSampleTable, column, nullptr, &collation,
                                                       nullptr, nullptr, nullptr);
  // coverage: the one table is made of the other's columns
  if ((of_types | of_samples) != SQLITE_OK) return {};
  // A column without a type has none (null); without a collation of its own it has the usual one.
  return std::string(column) + " " + (type == nullptr ? "" : type) + " COLLATE " + Quoted(collation);
}

}  // namespace

bool MakeProfileTable(sqlite3* database) {
  if (!Run(database, MakeTypes())) return false;
  std::string definitions = "date_time";
  for (const char* column : kProfileColumns) {
    const std::string definition = Definition(database, column);
    if (definition.empty()) return false;  // coverage: each column has one
    definitions += ", " + definition;
  }
  return Run(database, "DROP TABLE temp.zt_types;") &&
         Run(database, std::string("CREATE TEMP TABLE ") + kProfileTable + "(" + definitions + ");");
}

Statement PrepareProfileInsertion(sqlite3* database) {
  return Prepare(database, kInsert);
}

bool IndexProfileTable(sqlite3* database) {
  return Run(database, kIndex);
}

}  // namespace zt::telemetry::collector::performancesamples
