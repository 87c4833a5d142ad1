#pragma once

#include <sqlite3.h>

#include <functional>
#include <string>
#include <vector>

namespace zt::tests {

/// The SQL statements that the process runs on connections that it opens while this lives, in order. One at a time.
class SqlTrace {
 public:
  SqlTrace() {
    Current() = this;
    sqlite3_auto_extension(EntryPoint());
  }
  ~SqlTrace() {
    sqlite3_cancel_auto_extension(EntryPoint());
    Current() = nullptr;
  }
  SqlTrace(const SqlTrace&) = delete;
  SqlTrace& operator=(const SqlTrace&) = delete;

  std::vector<std::string> statements;
  /// Told of each statement before it reads anything.
  std::function<void(const std::string& sql)> on_statement;

 private:
  // SQLite runs it for each new connection.
  static int Attach(sqlite3* database, const char** /*error*/, const void* /*api*/) {
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, &Note, nullptr);
  }

  static int Note(unsigned /*event*/, void* /*context*/, void* /*statement*/, void* sql) {
    SqlTrace* const trace = Current();
    if (trace == nullptr) return 0;
    trace->statements.emplace_back(static_cast<const char*>(sql));
    if (trace->on_statement) trace->on_statement(trace->statements.back());
    return 0;
  }

  static void (*EntryPoint())() { return reinterpret_cast<void (*)()>(&Attach); }

  static SqlTrace*& Current() {
    static SqlTrace* current = nullptr;
    return current;
  }
};

}  // namespace zt::tests
