#include <sqlite3.h>

namespace {

// SQLite is part of this module on Windows, and keeps what it made when it was first used, locks of the system among
// it, until it is told to end: a host that loads and unloads the plugin for long would collect one set of them after
// the other. Its destructor runs when the module goes, behind those of everything that has a database open.
class SqliteOfThisModule {
 public:
  SqliteOfThisModule() = default;
  ~SqliteOfThisModule() { sqlite3_shutdown(); }
  SqliteOfThisModule(const SqliteOfThisModule&) = delete;
  SqliteOfThisModule& operator=(const SqliteOfThisModule&) = delete;
};

[[maybe_unused]] const SqliteOfThisModule sqlite_of_this_module;

}  // namespace
