#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/files.h"

namespace zt::telemetry::host {

/// A database as it lies on the disk, for looking at it.
class OpenedDatabase {
 public:
  explicit OpenedDatabase(const std::filesystem::path& file) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(ToText(file).c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    database_.reset(opened);
    if (result != SQLITE_OK) throw std::runtime_error("no database at " + ToText(file));
  }

  /// The first column of each row as text; "NULL" for a null.
  std::vector<std::string> Column(const std::string& sql) const {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, Finalize> statement(prepared);
    if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_.get()));
    std::vector<std::string> values;
    while (sqlite3_step(prepared) == SQLITE_ROW) {
      const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0));
      values.emplace_back(text != nullptr ? text : "NULL");
    }
    return values;
  }

  /// The one value of a query.
  std::string Value(const std::string& sql) const { return Column(sql).at(0); }
  int Number(const std::string& sql) const { return std::stoi(Value(sql)); }

  void Execute(const std::string& sql) const {
    if (sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(database_.get()));
    }
  }

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace zt::telemetry::host
