#include <sqlite3.h>

namespace {

// SQLite keeps what it made when it was first used, locks of the system among it, until it is told to end: a host that
// loads and unloads the plugin, and uses SQLite for nothing else, would collect one set of them after the other. The
// destructor runs when the last module that uses this one is gone.
class SqliteOfThisModule {
 public:
  SqliteOfThisModule() = default;
  ~SqliteOfThisModule() { sqlite3_shutdown(); }
  SqliteOfThisModule(const SqliteOfThisModule&) = delete;
  SqliteOfThisModule& operator=(const SqliteOfThisModule&) = delete;
};

[[maybe_unused]] const SqliteOfThisModule sqlite_of_this_module;

}  // namespace
