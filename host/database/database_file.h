#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/sqlite_handles.h"

namespace zt::telemetry::host {

/// A statement or a file that failed: the file, and what SQLite says of it.
class DatabaseError : public std::runtime_error {
 public:
  DatabaseError(int code, const std::string& text) : std::runtime_error(text), code_(code) {}

  /// SQLite's primary result code: SQLITE_BUSY, SQLITE_FULL and so on.
  int Code() const { return code_; }

 private:
  int code_;
};

/// A statement of a database file, which must outlive it. Parameters count from 1, columns from 0.
class Query {
 public:
  Query(sqlite3* database, std::string file, const std::string& sql);

  Query& Bind(int parameter, std::int64_t number);
  Query& Bind(int parameter, std::string_view text);
  Query& BindBytes(int parameter, std::string_view bytes);

  /// Goes on to the next row; false when there is none. Throws `DatabaseError`.
  bool Next();
  /// Runs a statement that gives no rows, to its end, and makes it ready for the next values.
  void Run();
  /// Makes it ready to run again with other values.
  void Reset();

  int Columns() const { return sqlite3_column_count(statement_.get()); }
  std::int64_t Integer(int column) const;
  std::string Text(int column) const;
  std::string Bytes(int column) const;

 private:
  void Require(int outcome) const;

  std::string file_;
  Statement statement_;
};

/// A connection to a database file.
class DatabaseFile {
 public:
  enum class Access { kRead, kWrite, kCreate };

  /// Opens `file`; statements wait up to `patience_ms` for others' locks. Throws `DatabaseError`.
  DatabaseFile(const std::filesystem::path& file, Access access, int patience_ms);

  /// The first statement of `sql`, ready to be given values. Throws `DatabaseError`, as all operations do.
  Query Prepare(const std::string& sql) const;
  /// Runs every statement of `sql`.
  void Run(const std::string& sql) const;
  /// The first column of the first row, 0 without one.
  std::int64_t Number(const std::string& sql) const;
  /// Rows that the last statement changed.
  std::int64_t Changes() const { return sqlite3_changes64(handle_.get()); }
  /// The identity of the row that was added last.
  std::int64_t LastRow() const { return sqlite3_last_insert_rowid(handle_.get()); }

  /// A copy of the whole database as it is at one moment, in place of what `copy` holds.
  void CopyTo(const DatabaseFile& copy) const;

 private:
  friend class WorkWatch;

  [[noreturn]] void Fail() const;

  std::string file_;
  Database handle_;
};

/// All statements until `Commit` count as one; without it none of them counts.
class Transaction {
 public:
  /// Takes the lock for writing at once.
  explicit Transaction(const DatabaseFile& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  const DatabaseFile& database_;
  bool open_ = true;
};

/// As long as it lives, its operation is called now and then while statements of a database work. One at a time.
class WorkWatch {
 public:
  WorkWatch(const DatabaseFile& database, std::function<void()> tell);
  ~WorkWatch();
  WorkWatch(const WorkWatch&) = delete;
  WorkWatch& operator=(const WorkWatch&) = delete;

 private:
  const DatabaseFile& database_;
  std::function<void()> tell_;
};

/// `name` as SQL takes it, whatever it holds.
std::string QuotedName(std::string_view name);

}  // namespace zt::telemetry::host
