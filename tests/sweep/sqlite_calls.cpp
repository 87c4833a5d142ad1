#include "sqlite_calls.h"

#include <cctype>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <list>
#include <string>
#include <string_view>

#include "kinds.h"

namespace zt::tests {
namespace {

constexpr int kDefault = 1;

SqliteCalls* current = nullptr;

// Whether a statement was run, or a connection opened, since the last that was prepared: the authoriser is asked many
// times for one.
bool prepares_next = true;

Disturbance Meets(const char* call, const char* of, std::initializer_list<Disturbance> kinds) {
  return simulation::Announce(std::string("SQLite ") + call, of, kinds);
}

bool FailsOf(const char* call, const char* of) {
  return Meets(call, of, {Disturbance::kFails}) == Disturbance::kFails;
}

const char* KindOfFile(int flags) {
  if ((flags & SQLITE_OPEN_MAIN_DB) != 0) return "database";
  if ((flags & SQLITE_OPEN_MAIN_JOURNAL) != 0) return "journal";
  if ((flags & SQLITE_OPEN_WAL) != 0) return "write-ahead log";
  return "temporary file";
}

const char* KindOfName(const char* name) {
  const std::string_view text = name != nullptr ? name : "";
  if (text.ends_with("-journal")) return "journal";
  return text.ends_with("-wal") ? "write-ahead log" : "database";
}

// The first words of a statement: enough to tell it from others.
std::string FirstWords(const char* sql) {
  constexpr std::size_t kLongest = 60;
  std::string words;
  for (; sql != nullptr && *sql != '\0' && words.size() < kLongest; ++sql) {
    const bool blank = std::isspace(static_cast<unsigned char>(*sql)) != 0;
    if (!blank) words += *sql;
    if (blank && !words.empty() && words.back() != ' ') words += ' ';
  }
  return words;
}

}  // namespace

// The methods of one kind of file, as SQLite is given them, with the system's behind them. First member: what a file
// points to.
struct SqliteCalls::Methods {
  sqlite3_io_methods watched{};
  const sqlite3_io_methods* system = nullptr;
  const char* of = nullptr;

  static const Methods& Of(sqlite3_file* file) { return *reinterpret_cast<const Methods*>(file->pMethods); }

  // The methods of this kind of file over these of the system, made when they are asked for first.
  static const sqlite3_io_methods* Over(const sqlite3_io_methods* system, const char* of) {
    static std::list<Methods> known;
    for (const Methods& methods : known) {
      if (methods.system == system && methods.of == of) return &methods.watched;
    }
    Methods& methods = known.emplace_back(Methods{*system, system, of});
    methods.watched.xRead = &Read;
    methods.watched.xWrite = &Write;
    methods.watched.xTruncate = &Truncate;
    methods.watched.xSync = &Sync;
    methods.watched.xFileSize = &Size;
    methods.watched.xLock = &Lock;
    methods.watched.xUnlock = &Unlock;
    methods.watched.xCheckReservedLock = &CheckReservedLock;
    return &methods.watched;
  }

  static int Read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
    const Methods& methods = Of(file);
    switch (Meets("read", methods.of, {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kAbsurd})) {
      case Disturbance::kFails:
        return SQLITE_IOERR_READ;
      case Disturbance::kEmpty:
        std::memset(bytes, 0, static_cast<std::size_t>(size));
        return SQLITE_IOERR_SHORT_READ;
      case Disturbance::kAbsurd:
        std::memset(bytes, 0xFF, static_cast<std::size_t>(size));
        return SQLITE_OK;
      default:
        return methods.system->xRead(file, bytes, size, offset);
    }
  }

  static int Write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset) {
    const Methods& methods = Of(file);
    const Disturbance met = Meets("write", methods.of, {Disturbance::kFails, Disturbance::kNoRoom});
    if (met == Disturbance::kFails) return SQLITE_IOERR_WRITE;
    return met == Disturbance::kNoRoom ? SQLITE_FULL : methods.system->xWrite(file, bytes, size, offset);
  }

  static int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    const Methods& methods = Of(file);
    return FailsOf("truncate", methods.of) ? SQLITE_IOERR_TRUNCATE : methods.system->xTruncate(file, size);
  }

  static int Sync(sqlite3_file* file, int /*flags*/) {
    return FailsOf("sync", Of(file).of) ? SQLITE_IOERR_FSYNC : SQLITE_OK;
  }

  static int Size(sqlite3_file* file, sqlite3_int64* size) {
    const Methods& methods = Of(file);
    const Disturbance met = Meets("size", methods.of, {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kAbsurd});
    if (met == Disturbance::kFails) return SQLITE_IOERR_FSTAT;
    if (met == Disturbance::kNone) return methods.system->xFileSize(file, size);
    *size = met == Disturbance::kEmpty ? 0 : std::numeric_limits<sqlite3_int64>::max();
    return SQLITE_OK;
  }

  static int Lock(sqlite3_file* file, int level) {
    const Methods& methods = Of(file);
    const Disturbance met = Meets("lock", methods.of, {Disturbance::kFails, Disturbance::kBusy});
    if (met == Disturbance::kFails) return SQLITE_IOERR_LOCK;
    return met == Disturbance::kBusy ? SQLITE_BUSY : methods.system->xLock(file, level);
  }

  static int Unlock(sqlite3_file* file, int level) {
    const Methods& methods = Of(file);
    const int outcome = methods.system->xUnlock(file, level);
    return FailsOf("unlock", methods.of) ? SQLITE_IOERR_UNLOCK : outcome;
  }

  static int CheckReservedLock(sqlite3_file* file, int* result) {
    const Methods& methods = Of(file);
    if (FailsOf("look for a lock", methods.of)) return SQLITE_IOERR_CHECKRESERVEDLOCK;
    return methods.system->xCheckReservedLock(file, result);
  }
};

SqliteCalls::SqliteCalls() {
  current = this;
  system_ = sqlite3_vfs_find(nullptr);
  files_ = *system_;
  files_.zName = "announced";
  files_.xOpen = &Open;
  files_.xDelete = &Delete;
  files_.xAccess = &Access;
  files_.xSleep = &Sleep;
  sqlite3_vfs_register(&files_, kDefault);
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Attach));
}

SqliteCalls::~SqliteCalls() {
  sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&Attach));
  sqlite3_vfs_unregister(&files_);
  sqlite3_vfs_register(system_, kDefault);
  current = nullptr;
}

int SqliteCalls::Open(sqlite3_vfs* files, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  const char* const of = KindOfFile(flags);
  file->pMethods = nullptr;
  if (FailsOf("open", of)) return SQLITE_CANTOPEN;
  const int outcome = current->system_->xOpen(files, name, file, flags, out_flags);
  if (file->pMethods != nullptr) file->pMethods = Methods::Over(file->pMethods, of);
  return outcome;
}

int SqliteCalls::Delete(sqlite3_vfs* files, const char* name, int sync_folder) {
  if (FailsOf("delete", KindOfName(name))) return SQLITE_IOERR_DELETE;
  return current->system_->xDelete(files, name, sync_folder);
}

int SqliteCalls::Access(sqlite3_vfs* files, const char* name, int flags, int* result) {
  if (FailsOf("look for", KindOfName(name))) return SQLITE_IOERR_ACCESS;
  return current->system_->xAccess(files, name, flags, result);
}

int SqliteCalls::Sleep(sqlite3_vfs* /*files*/, int microseconds) {
  return microseconds;
}

int SqliteCalls::Attach(sqlite3* database, const char** /*error*/, const void* /*api*/) {
  prepares_next = true;
  sqlite3_set_authorizer(
      database,
      [](void* /*context*/, int, const char*, const char*, const char*, const char*) {
        if (!prepares_next) return SQLITE_OK;
        prepares_next = false;
        const bool fails = simulation::Fails("SQLite prepare");
        prepares_next = fails;
        return fails ? SQLITE_DENY : SQLITE_OK;
      },
      nullptr);
  return sqlite3_trace_v2(
      database, SQLITE_TRACE_STMT,
      [](unsigned /*event*/, void* /*context*/, void* statement, void* sql) {
        prepares_next = true;
        const bool own = std::strncmp(static_cast<const char*>(sql), "--", 2) == 0;  // a trigger's, inside another
        if (!own && FailsOf("run", FirstWords(static_cast<const char*>(sql)).c_str())) {
          sqlite3_interrupt(sqlite3_db_handle(static_cast<sqlite3_stmt*>(statement)));
        }
        return 0;
      },
      nullptr);
}

}  // namespace zt::tests
