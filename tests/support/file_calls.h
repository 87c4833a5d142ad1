#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <utility>

namespace zt::tests {

/// What SQLite asks of files.
enum class FileCallKind {
  kOpen,
  kDelete,
  kAccess,
  kRead,
  kWrite,
  kTruncate,
  kSync,
  kFileSize,
  kLock,
  kUnlock,
  kCheckReservedLock,
  kSharedMemoryMap,
  kSharedMemoryLock,
};

/// Its name, as people say it.
inline std::string NameOf(FileCallKind kind) {
  // By the number of the kind.
  constexpr std::array<const char*, 13> kNames = {"open",
                                                  "delete",
                                                  "access",
                                                  "read",
                                                  "write",
                                                  "truncate",
                                                  "sync",
                                                  "file size",
                                                  "lock",
                                                  "unlock",
                                                  "reserved lock",
                                                  "shared memory map",
                                                  "shared memory lock"};
  return kNames.at(static_cast<std::size_t>(kind));
}

/// One call, as a test sees it before it is made.
struct FileCall {
  FileCallKind kind;
  /// From 1 on, over all kinds.
  int number = 0;
  /// Makes the first half of a write; nothing for another call.
  std::function<void()> write_half;
  /// Files that are open at that moment.
  int open_files = 0;
};

/// Stands between SQLite and the files of this process while it lives, and lets a test decide over each call: it is
/// made (SQLITE_OK), or fails with the code that the test gives. What a test does inside is not seen. One at a time.
class FileCalls {
 public:
  using Decision = std::function<int(const FileCall&)>;

  explicit FileCalls(Decision decide) : decide_(std::move(decide)) {
    instance_ = this;
    system_ = sqlite3_vfs_find(nullptr);
    files_ = *system_;
    files_.zName = "decided";
    files_.xOpen = &Open;
    files_.xDelete = &Delete;
    files_.xAccess = &Access;
    // A wait takes no time.
    files_.xSleep = [](sqlite3_vfs* /*files*/, int microseconds) { return microseconds; };
    sqlite3_vfs_register(&files_, kDefault);
  }
  ~FileCalls() {
    sqlite3_vfs_unregister(&files_);
    sqlite3_vfs_register(system_, kDefault);
    instance_ = nullptr;
  }
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

  /// Calls so far.
  int Count() const { return count_; }
  /// Files that are open.
  int OpenFiles() const { return open_files_; }

 private:
  static constexpr int kDefault = 1;

  // What the test says about a call.
  static int Decide(FileCallKind kind, std::function<void()> write_half = {}) {
    FileCalls& self = *instance_;
    if (self.inside_) return SQLITE_OK;
    self.inside_ = true;
    const int decision = self.decide_({kind, ++self.count_, std::move(write_half), self.open_files_});
    self.inside_ = false;
    return decision;
  }

  static const sqlite3_io_methods& SystemMethods(sqlite3_file* file) {
    return *instance_->system_methods_.at(file->pMethods);
  }

  // Makes the call `method` of the system unless the test says otherwise.
  template <typename Method, typename... Arguments>
  static int Make(FileCallKind kind, Method sqlite3_io_methods::*method, sqlite3_file* file, Arguments... arguments) {
    const int decision = Decide(kind);
    return decision == SQLITE_OK ? (SystemMethods(file).*method)(file, arguments...) : decision;
  }

  static int Open(sqlite3_vfs* files, const char* name, sqlite3_file* file, int flags, int* out_flags) {
    FileCalls& self = *instance_;
    file->pMethods = nullptr;
    const int decision = Decide(FileCallKind::kOpen);
    if (decision != SQLITE_OK) return decision;
    const int outcome = self.system_->xOpen(files, name, file, flags, out_flags);
    if (file->pMethods != nullptr && !self.inside_) self.Watch(*file);
    return outcome;
  }

  static int Delete(sqlite3_vfs* files, const char* name, int sync_folder) {
    const int decision = Decide(FileCallKind::kDelete);
    return decision == SQLITE_OK ? instance_->system_->xDelete(files, name, sync_folder) : decision;
  }

  static int Access(sqlite3_vfs* files, const char* name, int flags, int* result) {
    const int decision = Decide(FileCallKind::kAccess);
    return decision == SQLITE_OK ? instance_->system_->xAccess(files, name, flags, result) : decision;
  }

  void Watch(sqlite3_file& file) {
    auto [place, added] = methods_.try_emplace(file.pMethods, *file.pMethods);
    sqlite3_io_methods& watched = place->second;
    if (added) {
      system_methods_[&watched] = file.pMethods;
      SetMethods(watched);
    }
    file.pMethods = &watched;
    ++open_files_;
  }

  static void SetMethods(sqlite3_io_methods& watched) {
    watched.xClose = &Close;
    watched.xRead = &Read;
    watched.xWrite = &Write;
    watched.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) {
      return Make(FileCallKind::kTruncate, &sqlite3_io_methods::xTruncate, file, size);
    };
    watched.xSync = [](sqlite3_file* file, int flags) {
      return Make(FileCallKind::kSync, &sqlite3_io_methods::xSync, file, flags);
    };
    watched.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) {
      return Make(FileCallKind::kFileSize, &sqlite3_io_methods::xFileSize, file, size);
    };
    watched.xLock = [](sqlite3_file* file, int level) {
      return Make(FileCallKind::kLock, &sqlite3_io_methods::xLock, file, level);
    };
    watched.xUnlock = [](sqlite3_file* file, int level) {
      return Make(FileCallKind::kUnlock, &sqlite3_io_methods::xUnlock, file, level);
    };
    watched.xCheckReservedLock = [](sqlite3_file* file, int* result) {
      return Make(FileCallKind::kCheckReservedLock, &sqlite3_io_methods::xCheckReservedLock, file, result);
    };
    watched.xShmMap = [](sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
      return Make(FileCallKind::kSharedMemoryMap, &sqlite3_io_methods::xShmMap, file, page, size, extend, memory);
    };
    watched.xShmLock = [](sqlite3_file* file, int offset, int locks, int flags) {
      // Giving a lock back cannot fail.
      if ((flags & SQLITE_SHM_UNLOCK) != 0) return SystemMethods(file).xShmLock(file, offset, locks, flags);
      return Make(FileCallKind::kSharedMemoryLock, &sqlite3_io_methods::xShmLock, file, offset, locks, flags);
    };
  }

  static int Close(sqlite3_file* file) {
    --instance_->open_files_;
    return SystemMethods(file).xClose(file);
  }

  // What was not read is zeros, whatever the failure: so the system's own files do it.
  static int Read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
    const int decision = Decide(FileCallKind::kRead);
    if (decision == SQLITE_OK) return SystemMethods(file).xRead(file, bytes, size, offset);
    std::memset(bytes, 0, static_cast<std::size_t>(size));
    return decision;
  }

  static int Write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset) {
    const int decision = Decide(FileCallKind::kWrite, [=] {
      constexpr int kHalf = 2;
      SystemMethods(file).xWrite(file, bytes, size / kHalf, offset);
    });
    return decision == SQLITE_OK ? SystemMethods(file).xWrite(file, bytes, size, offset) : decision;
  }

  static inline FileCalls* instance_ = nullptr;

  Decision decide_;
  sqlite3_vfs* system_ = nullptr;
  sqlite3_vfs files_{};
  std::map<const sqlite3_io_methods*, sqlite3_io_methods> methods_;
  std::map<const sqlite3_io_methods*, const sqlite3_io_methods*> system_methods_;
  bool inside_ = false;
  int count_ = 0;
  int open_files_ = 0;
};

}  // namespace zt::tests
