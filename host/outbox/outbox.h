#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/database/database_file.h"
#include "host/outbox/outbox_limits.h"

namespace zt::telemetry::host {

/// What a collector handed over, as it is kept.
struct HandOver {
  std::string kind;           // "store" or "send"
  std::string message;        // full name of the record's type, "text" for a text
  std::string collection_id;  // empty where the record has none
  std::string local_time;     // as the record tells it
  std::string bytes;          // the record in protobuf's form, or the text
  std::string samples = {};   // which stored samples it is made of: equal for the same ones, empty for none
};

/// What became of a kept hand-over.
enum class Standing {
  kCurrent,   // counts
  kReplaced,  // the same samples were sent again, before it was delivered
  kAgain,     // the same samples were sent before, and that was delivered: kept once more
};

struct KeptHandOver {
  std::int64_t id = 0;
  HandOver hand_over;
  std::chrono::sys_time<std::chrono::milliseconds> arrived;
  std::string contract_version;
  std::int64_t deliveries = 0;
  Standing standing = Standing::kCurrent;
};

/// What pruning took away.
struct Pruned {
  std::int64_t delivered = 0;
  std::int64_t undelivered = 0;  // for the size alone
};

/// "deleted 2 hand-overs that were delivered, replaced or sent again, and 1 that were not delivered".
std::string PrunedText(const Pruned& pruned);

struct OutboxFigures {
  std::int64_t current = 0;
  std::int64_t undelivered = 0;  // of the current ones
  std::int64_t replaced = 0;
  std::int64_t again = 0;
  std::int64_t bytes = 0;    // of the file
  std::int64_t dropped = 0;  // undelivered ones that were dropped for the size, ever
};

/// Samples whose records are kept, and which are still to be deleted.
struct TakenSamples {
  std::string file;      // of their rows, in the outbox's folder
  std::string database;  // where they are to be deleted; UTF-8, absolute
};

/// Hand-overs that outlive the program: one SQLite file ("outbox.db" in a folder), which is durable whenever an
/// operation returns. Operations throw `DatabaseError`.
class Outbox {
 public:
  /// Makes the folder and the file where they are missing. A file that is damaged is renamed and a new one begun;
  /// `SetAside` tells its new name.
  explicit Outbox(const std::filesystem::path& folder);

  /// Opens an outbox that is there, as `list` and the like do. Throws `Failure` with wrong usage where there is none.
  static Outbox Existing(const std::filesystem::path& folder);

  const std::filesystem::path& Folder() const { return folder_; }
  const std::optional<std::filesystem::path>& SetAside() const { return set_aside_; }

  /// Keeps the hand-overs of one collection, all or none, and with them which samples are to be deleted now.
  void Keep(const std::vector<HandOver>& hand_overs, const std::optional<TakenSamples>& taken);

  /// The samples that were to be deleted and may not be yet, oldest first.
  std::vector<TakenSamples> Taken() const;
  /// The samples of this file are deleted.
  void ForgetTaken(const std::string& file);

  /// Calls `show` with each hand-over, oldest first; those that do not count too when `all`. At most `count` behind the
  /// one with the identity `after`.
  void ForEach(bool all, const std::function<void(const KeptHandOver&)>& show, std::int64_t after = 0,
               std::int64_t count = -1) const;
  /// Calls `show` with each hand-over that counts, newest first, until it returns false.
  void ForEachNewestFirst(const std::function<bool(const KeptHandOver&)>& show) const;
  /// The hand-over of this identity; nothing when there is none.
  std::optional<KeptHandOver> Find(std::int64_t id) const;

  /// Counts a delivery of each of these.
  void CountDeliveries(const std::vector<std::int64_t>& ids);

  /// Holds to the limits: what was delivered and is too old goes, then what was delivered, oldest first, until the size
  /// is kept, then the oldest of the rest.
  /// `tell` is called now and then while that lasts, with what has gone so far.
  Pruned Prune(const OutboxLimits& limits, const std::function<void(const Pruned&)>& tell = {});

  OutboxFigures Figures() const;

  /// The identity of the newest hand-over, 0 without one.
  std::int64_t LastId() const;

 private:
  Outbox(const std::filesystem::path& folder, DatabaseFile::Access access);

  void KeepOne(const HandOver& hand_over);
  Standing Replace(const HandOver& hand_over);
  std::int64_t UsedBytes() const;
  // Deletes the oldest hand-overs of those that `which` (SQL) names until no more than so many bytes are used; adds
  // their number to `dropped`, and calls `tell` now and then.
  void DropOldest(const std::string& which, std::int64_t bytes, std::int64_t& dropped,
                  const std::function<void()>& tell);

  std::filesystem::path folder_;
  std::optional<std::filesystem::path> set_aside_;
  std::optional<DatabaseFile> file_;
};

/// As long as it lives, no other process collects into the outbox of this folder. Ends with the process, however that
/// ends. Throws `Failure` when another one still does after `patience_ms`.
class CollectingLock {
 public:
  CollectingLock(const std::filesystem::path& folder, int patience_ms);

 private:
  DatabaseFile file_;
};

/// "current", "replaced" or "again".
std::string StandingText(Standing standing);

}  // namespace zt::telemetry::host
