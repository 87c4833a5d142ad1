#pragma once

#include <sqlite3.h>

#include <functional>
#include <map>
#include <vector>

namespace zt::tests {

/// Stands between SQLite and the files of this process while it lives: sees what is opened and read, and lets a test
/// step in between. A wait takes no time: it is counted, and `on_wait` says what happens meanwhile. What a test does
/// inside such a call is not watched. One at a time.
class WatchedFiles {
 public:
  WatchedFiles() {
    watching_ = this;
    system_ = sqlite3_vfs_find(nullptr);
    files_ = *system_;
    files_.zName = "watched";
    files_.xOpen = &Open;
    files_.xSleep = &Sleep;
    sqlite3_vfs_register(&files_, kDefault);
  }
  ~WatchedFiles() {
    sqlite3_vfs_unregister(&files_);
    sqlite3_vfs_register(system_, kDefault);
    watching_ = nullptr;
  }
  WatchedFiles(const WatchedFiles&) = delete;
  WatchedFiles& operator=(const WatchedFiles&) = delete;

  /// Waits for locks so far.
  int WaitedMs() const { return waited_us_ / 1000; }
  /// Bytes that were read of databases.
  sqlite3_int64 BytesRead() const { return bytes_read_; }
  /// How each file that is no database and no journal of one was opened: SQLITE_OPEN_ flags.
  const std::vector<int>& TemporaryFiles() const { return temporary_files_; }

  std::function<void()> on_wait;
  /// Called before a database is opened for the n-th time, from 1 on.
  std::function<void(int)> on_open;
  /// Called when a connection has let go of a database.
  std::function<void()> on_release;
  /// Whether the n-th read of a database, from 1 on, is to fail.
  std::function<bool(int)> read_fails;

 private:
  static constexpr int kDefault = 1;

  template <typename Function, typename... Arguments>
  void Call(const Function& function, Arguments... arguments) {
    if (inside_ || !function) return;
    inside_ = true;
    function(arguments...);
    inside_ = false;
  }

  static int Sleep(sqlite3_vfs* /*files*/, int microseconds) {
    watching_->waited_us_ += microseconds;
    watching_->Call(watching_->on_wait);
    return microseconds;
  }

  static int Open(sqlite3_vfs* files, const char* name, sqlite3_file* file, int flags, int* out_flags) {
    WatchedFiles& self = *watching_;
    const bool database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
    constexpr int kJournals = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL;
    if (!self.inside_ && !database && (flags & kJournals) == 0) self.temporary_files_.push_back(flags);
    if (!self.inside_ && database) self.Call(self.on_open, ++self.opened_);
    const int outcome = self.system_->xOpen(files, name, file, flags, out_flags);
    if (outcome == SQLITE_OK && database && !self.inside_) self.Watch(*file);
    return outcome;
  }

  void Watch(sqlite3_file& file) {
    auto [place, added] = methods_.try_emplace(file.pMethods, *file.pMethods);
    sqlite3_io_methods& watched = place->second;
    if (added) {
      watched.xRead = &Read;
      watched.xUnlock = &Unlock;
      original_[&watched] = file.pMethods;
    }
    file.pMethods = &watched;
  }

  static int Read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
    WatchedFiles& self = *watching_;
    self.bytes_read_ += size;
    ++self.reads_;
    if (self.read_fails && self.read_fails(self.reads_)) return SQLITE_IOERR_READ;
    return self.original_.at(file->pMethods)->xRead(file, bytes, size, offset);
  }

  static int Unlock(sqlite3_file* file, int level) {
    const int outcome = watching_->original_.at(file->pMethods)->xUnlock(file, level);
    if (level == SQLITE_LOCK_NONE) watching_->Call(watching_->on_release);
    return outcome;
  }

  static inline WatchedFiles* watching_ = nullptr;

  sqlite3_vfs* system_ = nullptr;
  sqlite3_vfs files_{};
  std::map<const sqlite3_io_methods*, sqlite3_io_methods> methods_;
  std::map<const sqlite3_io_methods*, const sqlite3_io_methods*> original_;
  bool inside_ = false;
  int waited_us_ = 0;
  int opened_ = 0;
  int reads_ = 0;
  sqlite3_int64 bytes_read_ = 0;
  std::vector<int> temporary_files_;
};

}  // namespace zt::tests
