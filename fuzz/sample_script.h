#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// How the bytes of an input become a sample database: which tables there are and how they are made, then row after
/// row. A row begins as an ordinary sample and lists the columns in which it differs, so that a few bytes are enough
/// for a sample, and any bytes are a database.
namespace zt::fuzz {

enum Table : std::uint8_t { kThermal, kNetwork, kTables };

inline constexpr const char* kTableNames[kTables] = {"ThermalData", "NetworkData"};

/// How a table is made. Numbers above are those of an ordinary one.
enum class Shape : std::uint8_t {
  kAbsent,
  kWithoutTypes,
  kChosenTypes,  // a byte for each column: its declaration, or that there is none
  kWithoutRowNumbers,
  kView,
  kColumnOfTheHour,
  kColumnOfTheRowNumber,
  kComputedColumn,
  kIndexed,
  kGuarded,  // a trigger keeps its rows from being deleted
  kOrdinary,
};

/// What a byte says the next value is.
enum class Value : std::uint8_t {
  kNull,
  kSmallInteger,  // one byte
  kInteger,       // eight bytes
  kReal,          // eight bytes
  kSmallReal,     // one byte, quarters
  kText,          // a byte for the length, the text
  kBlob,          // the same
  kLongText,      // a byte for the length in steps of 8, one that is repeated
  kKnownText,     // a byte that chooses
  kKnownNumber,   // a byte that chooses
  kHour,          // a byte for the hour, one for the minute
  kKinds,
};

/// A column's name and the literal that an ordinary sample has there.
struct Column {
  std::string name;
  std::string declaration;
  std::string literal;
};

/// Those of the table, the time first.
const std::vector<Column>& ColumnsOf(Table table);

/// A database as an input describes it.
struct WrittenTables {
  Shape shapes[kTables] = {Shape::kAbsent, Shape::kAbsent};
};
WrittenTables WriteDatabase(sqlite3* database, std::span<const std::uint8_t> script);

/// What an index adds to the tables whose shape says so, afterwards: the order of rows is no longer left to SQLite.
void AddIndexes(sqlite3* database, const WrittenTables& tables);

}  // namespace zt::fuzz
