#include "sample_script.h"

#include <array>
#include <cstdio>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

#include "host/seed/sample_schema.h"
#include "input_bytes.h"
#include "store/sqlite_handles.h"

namespace zt::fuzz {
namespace {

using telemetry::collector::performancesamples::Prepare;
using telemetry::collector::performancesamples::Run;
using telemetry::collector::performancesamples::Statement;

constexpr int kMostRows = 48;
constexpr unsigned kDifferences = 32;

constexpr std::array kDeclarations = {"",
                                      "INTEGER",
                                      "REAL",
                                      "TEXT",
                                      "BLOB",
                                      "NUMERIC",
                                      "TEXT COLLATE NOCASE",
                                      "TEXT COLLATE RTRIM",
                                      "BIGINT COLLATE NOCASE",
                                      "VARCHAR(32) DEFAULT 'none'",
                                      "DOUBLE NOT NULL DEFAULT 1.5",
                                      "ANY"};
constexpr std::uint8_t kNoColumn = 0xFF;

constexpr std::array<std::string_view, 40> kTexts = {"",
                                                     "now",
                                                     "{A}",
                                                     "{a}",
                                                     "{A} ",
                                                     "01",
                                                     "1",
                                                     "1.0",
                                                     " 1",
                                                     "1e3",
                                                     "1e400",
                                                     "0x10",
                                                     "NaN",
                                                     "yes",
                                                     "null",
                                                     "[1,2]",
                                                     "{\"a\":1}",
                                                     "\"",
                                                     "\\",
                                                     "\xFF\xFE",
                                                     "\xC3",
                                                     "\xED\xA0\x80",
                                                     std::string_view("a\0b", 3),
                                                     "\x01\x1F",
                                                     "\xF0\x9F\x98\x80",
                                                     "2026-03-07T24:00:00.000Z",
                                                     "2026-02-30T12:00:00",
                                                     "2026-13-07T12:00:00",
                                                     "-4713-11-24T12:00:00",
                                                     "9999-12-31T23:59:59.999Z",
                                                     "0000-01-01T00:00:00",
                                                     "2460000.5",
                                                     "12:34:56",
                                                     "2026-03-07T12:34:56+01:00",
                                                     "2026-03-07 12:34",
                                                     "2026-03-07",
                                                     "2026-03-07T12:34:60",
                                                     "2026-03-07t12:34:56",
                                                     "2026-03-07T12:34:56Z ",
                                                     "unreadable"};

constexpr std::array kNumbers = {0.0,
                                 -0.0,
                                 0.1,
                                 1.0,
                                 2.5,
                                 2.5000000000000004,
                                 1e15,
                                 1e16,
                                 -1e16,
                                 1e18,
                                 1e19,
                                 9.2e18,
                                 9.3e18,
                                 -9.3e18,
                                 1.8446744073709552e19,
                                 1e38,
                                 3.5e38,
                                 -1e300,
                                 1e308,
                                 1.7e308,
                                 5e-324,
                                 4294967295.0,
                                 4294967296.0,
                                 2147483648.0,
                                 -1.5,
                                 0.30000000000000004};

// "id INTEGER PRIMARY KEY AUTOINCREMENT, date_time TEXT NOT NULL, ...", its id left out.
std::vector<Column> ReadColumns(std::string_view schema, const std::map<std::string, std::string>& literals) {
  std::vector<Column> columns;
  schema.remove_prefix(schema.find(", ") + 2);
  while (!schema.empty()) {
    const std::string_view column = schema.substr(0, schema.find(", "));
    schema.remove_prefix(std::min(column.size() + 2, schema.size()));
    const std::size_t blank = column.find(' ');
    const std::string name(column.substr(0, blank));
    const auto literal = literals.find(name);
    columns.push_back(
        {name, std::string(column.substr(blank + 1)), literal == literals.end() ? "1000" : literal->second});
  }
  return columns;
}

std::vector<Column> ThermalColumns() {
  return ReadColumns(telemetry::host::kThermalColumns,
                     {{"date_time", "'2026-03-07T12:34:56.000Z'"}, {"cpu_temp", "50.5"}, {"fan1_speed_step", "20"}});
}

std::vector<Column> NetworkColumns() {
  return ReadColumns(telemetry::host::kNetworkColumns, {{"date_time", "'2026-03-07T12:34:56.000Z'"},
                                                        {"interface_device_id", "'{A}'"},
                                                        {"network_trust_level", "'Private'"},
                                                        {"is_managed", "1"},
                                                        {"radio_type", "'802.11ax'"},
                                                        {"signal_strength", "-60"},
                                                        {"is_vpn_connected", "0"},
                                                        {"has_network_access", "1"},
                                                        {"has_internet_access", "1"},
                                                        {"profile_name_hash", "x'AB12'"},
                                                        {"profile_authentication", "'WPA2PSK'"},
                                                        {"profile_encryption", "'AES'"}});
}

// The columns that a table has, with their declarations.
using Declared = std::vector<std::pair<std::string, std::string>>;

Declared Declare(Table table, Shape shape, InputBytes& script) {
  Declared declared;
  for (const Column& column : ColumnsOf(table)) {
    const std::uint8_t choice = shape == Shape::kChosenTypes ? script.Byte() : 0;
    if (shape == Shape::kChosenTypes && choice == kNoColumn) continue;
    const bool is_own =
        shape != Shape::kWithoutTypes && (shape != Shape::kChosenTypes || choice >= kDeclarations.size());
    declared.emplace_back(column.name, is_own                         ? column.declaration
                                       : shape == Shape::kChosenTypes ? kDeclarations[choice]
                                                                      : "");
  }
  return declared;
}

std::string Joined(const Declared& declared) {
  std::string joined;
  for (const auto& [name, declaration] : declared) joined += ", " + name + " " + declaration;
  return joined;
}

// What a shape adds to the columns, to the end of a table, and behind it.
struct Additions {
  const char* columns = "";
  const char* options = "";
};

Additions AdditionsOf(Shape shape) {
  switch (shape) {
    case Shape::kWithoutRowNumbers:
      return {"", " WITHOUT ROWID"};
    case Shape::kColumnOfTheHour:
      return {", hour_window TEXT DEFAULT 'x'", ""};
    case Shape::kColumnOfTheRowNumber:
      return {", _rowid_ INTEGER DEFAULT 1", ""};
    case Shape::kComputedColumn:
      return {", computed AS (strftime('%H', date_time))", ""};
    default:
      return {};
  }
}

void MakeTable(sqlite3* database, Table table, Shape shape, const Declared& declared) {
  const std::string name = kTableNames[table];
  const std::string stored = shape == Shape::kView ? "Stored" + name : name;
  const Additions additions = AdditionsOf(shape);
  Run(database, "CREATE TABLE " + stored + "(id INTEGER PRIMARY KEY" + Joined(declared) + additions.columns + ")" +
                    additions.options + ";");
  if (shape == Shape::kView) Run(database, "CREATE VIEW " + name + " AS SELECT * FROM " + stored + ";");
  if (shape == Shape::kGuarded) {
    Run(database,
        "CREATE TRIGGER " + name + "Guard BEFORE DELETE ON " + name + " BEGIN SELECT RAISE(ABORT, 'no'); END;");
  }
}

// The insertion of an ordinary sample, a parameter for each column that takes the literal's place unless it is left
// unbound.
class Insertion {
 public:
  Insertion(sqlite3* database, Table table, Shape shape, const Declared& declared) {
    std::map<std::string, const Column*> by_name;
    for (const Column& column : ColumnsOf(table)) by_name[column.name] = &column;
    std::string names;
    std::string values;
    for (const auto& [name, declaration] : declared) {
      const std::string number = std::to_string(++columns_);
      names += (names.empty() ? "" : ", ") + name;
      values += (values.empty() ? "" : ", ") +
                ("iif(?" + std::to_string(kDifferences + columns_) + ", ?" + number + ", ") + by_name[name]->literal +
                ")";
    }
    const std::string stored = std::string(shape == Shape::kView ? "Stored" : "") + kTableNames[table];
    statement_ = Prepare(database, "INSERT INTO " + stored + "(id, " + names + ") VALUES(?" +
                                       std::to_string(2 * kDifferences + 1) + ", " + values + ");");
  }

  void Add(int id, InputBytes& script, unsigned differences) {
    sqlite3_stmt* const statement = statement_.get();
    for (; differences > 0; --differences) {
      const unsigned column = script.Byte();
      const int parameter = columns_ == 0 ? 0 : static_cast<int>(column % columns_) + 1;
      Bind(parameter, script);
      if (statement != nullptr) sqlite3_bind_int(statement, static_cast<int>(kDifferences) + parameter, 1);
    }
    if (statement == nullptr) return;
    sqlite3_bind_int(statement, 2 * kDifferences + 1, id);
    sqlite3_step(statement);
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
  }

 private:
  void Bind(int parameter, InputBytes& script) {
    sqlite3_stmt* const statement = statement_.get();
    switch (static_cast<Value>(script.Byte() % static_cast<unsigned>(Value::kKinds))) {
      case Value::kSmallInteger:
        sqlite3_bind_int64(statement, parameter, script.As<std::int8_t>());
        break;
      case Value::kInteger:
        sqlite3_bind_int64(statement, parameter, script.As<std::int64_t>());
        break;
      case Value::kReal:
        sqlite3_bind_double(statement, parameter, script.As<double>());
        break;
      case Value::kSmallReal:
        sqlite3_bind_double(statement, parameter, script.As<std::int8_t>() / 4.0);
        break;
      case Value::kText:
        BindText(parameter, script.Text(script.Byte() % 64));
        break;
      case Value::kBlob: {
        const std::string bytes = script.Text(script.Byte() % 64);
        sqlite3_bind_blob(statement, parameter, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
        break;
      }
      case Value::kLongText: {
        const std::size_t length = std::size_t{8} * script.Byte();
        BindText(parameter, std::string(length, static_cast<char>(script.Byte())));
        break;
      }
      case Value::kKnownText:
        BindText(parameter, kTexts[script.Byte() % kTexts.size()]);
        break;
      case Value::kKnownNumber:
        BindKnownNumber(parameter, script.Byte());
        break;
      case Value::kHour:
        BindHour(parameter, script);
        break;
      case Value::kNull:
      case Value::kKinds:
        sqlite3_bind_null(statement, parameter);
        break;
    }
  }

  void BindText(int parameter, std::string_view text) {
    sqlite3_bind_text(statement_.get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }

  // Whole numbers at the ends of their range, and others.
  void BindKnownNumber(int parameter, std::uint8_t choice) {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr std::array kIntegers = {Limits::max(),
                                      Limits::min(),
                                      Limits::max() - 1,
                                      std::int64_t{1} << 53,
                                      std::int64_t{4294967296},
                                      std::int64_t{-4294967296}};
    if (choice < kIntegers.size()) {
      sqlite3_bind_int64(statement_.get(), parameter, kIntegers[choice]);
    } else {
      sqlite3_bind_double(statement_.get(), parameter, kNumbers[choice % kNumbers.size()]);
    }
  }

  void BindHour(int parameter, InputBytes& script) {
    constexpr unsigned kHours = 6;
    const unsigned hour = script.Byte();
    const unsigned minute = script.Byte();
    std::array<char, 40> text{};
    const char separator = (hour / kHours) % 4 == 3 ? ' ' : 'T';
    const char* const end = (hour / kHours) % 5 == 4 ? "+01:00" : ".000Z";
    std::snprintf(text.data(), text.size(), "2026-03-07%c%02u:%02u:%02u%s", separator, 9 + hour % kHours, minute % 60,
                  minute / 5, end);
    BindText(parameter, text.data());
  }

  unsigned columns_ = 0;
  Statement statement_;
};

Shape ReadShape(InputBytes& script) {
  const std::uint8_t byte = script.Byte();
  return byte >= static_cast<std::uint8_t>(Shape::kOrdinary) ? Shape::kOrdinary : static_cast<Shape>(byte);
}

}  // namespace

const std::vector<Column>& ColumnsOf(Table table) {
  static const std::vector<Column> thermal = ThermalColumns();
  static const std::vector<Column> network = NetworkColumns();
  return table == kThermal ? thermal : network;
}

WrittenTables WriteDatabase(sqlite3* database, std::span<const std::uint8_t> bytes) {
  InputBytes script(bytes);
  WrittenTables tables;
  std::vector<Insertion> insertions;
  Run(database, "BEGIN;");
  for (const Table table : {kThermal, kNetwork}) {
    const Shape shape = tables.shapes[table] = ReadShape(script);
    const Declared declared = Declare(table, shape, script);
    if (shape != Shape::kAbsent) MakeTable(database, table, shape, declared);
    insertions.emplace_back(database, table, shape, declared);
  }
  for (int row = 1; row <= kMostRows && !script.AtEnd(); ++row) {
    const unsigned byte = script.Byte();
    insertions[byte % kTables].Add(row, script, byte / kTables % kDifferences);
  }
  insertions.clear();
  Run(database, "COMMIT;");
  return tables;
}

void AddIndexes(sqlite3* database, const WrittenTables& tables) {
  if (tables.shapes[kThermal] == Shape::kIndexed) {
    Run(database, "CREATE INDEX ThermalIndex ON ThermalData(cpu_temp, date_time);");
  }
  if (tables.shapes[kNetwork] == Shape::kIndexed) {
    Run(database, "CREATE INDEX NetworkIndex ON NetworkData(interface_device_id, profile_name_hash);");
  }
}

}  // namespace zt::fuzz
