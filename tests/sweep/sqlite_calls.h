#pragma once

#include <sqlite3.h>

namespace zt::tests {

/// Announces what SQLite asks of its files, and the statements that it prepares and runs, as calls of the machine
/// (`simulation::WatchCalls`) while it lives, and lets them fail. Waits and syncs take no time. One at a time.
class SqliteCalls {
 public:
  SqliteCalls();
  ~SqliteCalls();
  SqliteCalls(const SqliteCalls&) = delete;
  SqliteCalls& operator=(const SqliteCalls&) = delete;

 private:
  struct Methods;

  static int Open(sqlite3_vfs* files, const char* name, sqlite3_file* file, int flags, int* out_flags);
  static int Delete(sqlite3_vfs* files, const char* name, int sync_folder);
  static int Access(sqlite3_vfs* files, const char* name, int flags, int* result);
  static int Sleep(sqlite3_vfs* files, int microseconds);
  static int Attach(sqlite3* database, const char** error, const void* api);

  sqlite3_vfs* system_ = nullptr;
  sqlite3_vfs files_{};
};

}  // namespace zt::tests
