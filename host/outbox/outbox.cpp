#include "host/outbox/outbox.h"

#include <array>
#include <cctype>
#include <system_error>
#include <utility>

#include "host/failure.h"
#include "host/files.h"
#include "host/outbox/contract_version.h"
#include "host/outbox/kept_record.h"
#include "host/program_environment.h"
#include "host/utc_time.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using Access = DatabaseFile::Access;

constexpr char kFileName[] = "outbox.db";
constexpr char kLockName[] = "collecting.lock";
constexpr int kPatienceMs = 10'000;  // others hold the file for one hand-over each
constexpr std::int64_t kLayout = 1;

constexpr char kTables[] = R"(
CREATE TABLE IF NOT EXISTS hand_overs(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  kind TEXT NOT NULL,
  message TEXT NOT NULL,
  collection_id TEXT NOT NULL,
  local_time TEXT NOT NULL,
  arrived_ms INTEGER NOT NULL,
  contract_version TEXT NOT NULL,
  standing INTEGER NOT NULL,
  deliveries INTEGER NOT NULL DEFAULT 0,
  samples TEXT NOT NULL,
  bytes BLOB NOT NULL);
CREATE INDEX IF NOT EXISTS hand_overs_by_collection ON hand_overs(collection_id);
CREATE TABLE IF NOT EXISTS taken_samples(file TEXT PRIMARY KEY, database TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS counts(name TEXT PRIMARY KEY, number INTEGER NOT NULL);
)";
constexpr char kColumns[] =
    "SELECT id, kind, message, collection_id, local_time, arrived_ms, contract_version, standing, deliveries, bytes, "
    "samples "
    "FROM hand_overs ";
constexpr char kDropped[] = "dropped";

constexpr std::array kStandings = {"current", "replaced", "again"};

KeptHandOver Read(const Query& row) {
  enum Place {
    kId,
    kKind,
    kMessage,
    kCollection,
    kTime,
    kArrived,
    kContract,
    kStanding,
    kDeliveries,
    kBytes,
    kSamples
  };
  return {row.Integer(kId),
          {row.Text(kKind), row.Text(kMessage), row.Text(kCollection), row.Text(kTime), row.Bytes(kBytes),
           row.Text(kSamples)},
          std::chrono::sys_time<std::chrono::milliseconds>(std::chrono::milliseconds(row.Integer(kArrived))),
          row.Text(kContract),
          row.Integer(kDeliveries),
          static_cast<Standing>(row.Integer(kStanding))};
}

bool IsDamage(const DatabaseError& failure) {
  return failure.Code() == SQLITE_CORRUPT || failure.Code() == SQLITE_NOTADB;
}

std::chrono::sys_time<std::chrono::milliseconds> Now() {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

DatabaseFile Open(const fs::path& file, Access access) {
  DatabaseFile database(file, access, kPatienceMs);
  // Of a new file: large pages, of which the check of a file has fewer to read.
  database.Run("PRAGMA page_size = 32768; PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL");
  Query check = database.Prepare("PRAGMA quick_check(1)");
  if (!check.Next() || check.Text(0) != "ok") throw DatabaseError(SQLITE_CORRUPT, PathText(file) + ": it is damaged");
  const std::int64_t layout = database.Number("PRAGMA user_version");
  if (layout > kLayout) {
    throw WrongUsage(PathText(file) + ": this outbox was made by a newer version of this program (layout " +
                     std::to_string(layout) + "; this one knows layouts up to " + std::to_string(kLayout) + ")");
  }
  if (access == Access::kCreate) {
    Transaction transaction(database);
    database.Run(kTables);
    database.Run("PRAGMA user_version = " + std::to_string(kLayout));
    transaction.Commit();
  }
  return database;
}

// Nothing when it is damaged. What could not be read for once looks the same: damage is what is there the next time
// too.
std::optional<DatabaseFile> OpenUndamaged(const fs::path& file) {
  constexpr int kAttempts = 2;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    try {
      return Open(file, Access::kCreate);
    } catch (const DatabaseError& failure) {
      if (!IsDamage(failure)) throw;
    }
  }
  return std::nullopt;
}

// The present, as file names of every system take it: "20260307140030000".
std::string Stamp() {
  std::string stamp = FormatUtcTime(std::chrono::floor<std::chrono::seconds>(Now()));
  std::erase_if(stamp, [](unsigned char character) { return std::isdigit(character) == 0; });
  return stamp;
}

// A name that no file has: a damaged file is evidence, and may hold records that can be saved.
fs::path FreeName(const fs::path& file) {
  const std::string stamp = Stamp();
  for (int number = 1;; ++number) {
    fs::path name = file;
    name += ".damaged-" + stamp + (number == 1 ? "" : "-" + std::to_string(number));
    if (!fs::exists(name)) return name;
  }
}

// Its journal belongs to it.
fs::path PutAside(const fs::path& file) {
  const fs::path name = FreeName(file);
  fs::rename(file, name);
  for (const char* suffix : {"-wal", "-shm"}) {
    fs::path journal = file;
    journal += suffix;
    fs::path aside = name;
    aside += suffix;
    std::error_code none;
    fs::rename(journal, aside, none);
  }
  return name;
}

}  // namespace

Outbox::Outbox(const fs::path& folder) : Outbox(folder, Access::kCreate) {}

Outbox::Outbox(const fs::path& folder, Access access) : folder_(folder) {
  const fs::path file = folder / kFileName;
  if (access == Access::kCreate) MakeWritableFolder(folder, "--outbox");
  file_ = access == Access::kCreate ? OpenUndamaged(file) : Open(file, access);
  if (file_.has_value()) return;
  set_aside_ = PutAside(file);
  file_ = Open(file, access);
}

Outbox Outbox::Existing(const fs::path& folder) {
  std::error_code error;
  if (!fs::exists(folder / kFileName, error)) {
    throw WrongUsage("--outbox " + PathText(folder) + ": there is no outbox; expected a folder with \"" + kFileName +
                     "\", which collect --outbox makes");
  }
  return {folder, Access::kWrite};
}

void Outbox::Keep(const std::vector<HandOver>& hand_overs, const std::optional<TakenSamples>& taken) {
  Transaction transaction(*file_);
  for (const HandOver& hand_over : hand_overs) KeepOne(hand_over);
  if (taken.has_value()) {
    file_->Prepare("INSERT INTO taken_samples(file, database) VALUES(?, ?)")
        .Bind(1, taken->file)
        .Bind(2, taken->database)
        .Run();
  }
  transaction.Commit();
}

// An hour that is collected in two halves gives two records of one identity: both count. Only a record of the very
// samples of an earlier one takes its place, or stands behind it.
Standing Outbox::Replace(const HandOver& hand_over) {
  if (hand_over.samples.empty()) return Standing::kCurrent;
  const auto bind = [&](Query&& query) -> Query {
    query.Bind(1, hand_over.collection_id).Bind(2, hand_over.message).Bind(3, hand_over.samples);
    return std::move(query);
  };
  constexpr char kSame[] = " WHERE collection_id = ?1 AND message = ?2 AND samples = ?3 AND standing = 0";
  bind(file_->Prepare(std::string("UPDATE hand_overs SET standing = 1") + kSame + " AND deliveries = 0")).Run();
  return bind(file_->Prepare(std::string("SELECT 1 FROM hand_overs") + kSame)).Next() ? Standing::kAgain
                                                                                      : Standing::kCurrent;
}

void Outbox::KeepOne(const HandOver& hand_over) {
  const Standing standing = Replace(hand_over);
  file_
      ->Prepare(
          "INSERT INTO hand_overs(kind, message, collection_id, local_time, arrived_ms, contract_version, standing, "
          "bytes, samples) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)")
      .Bind(1, hand_over.kind)
      .Bind(2, hand_over.message)
      .Bind(3, hand_over.collection_id)
      .Bind(4, hand_over.local_time)
      .Bind(5, Now().time_since_epoch().count())
      .Bind(6, ContractVersion())
      .Bind(7, static_cast<std::int64_t>(standing))
      .BindBytes(8, hand_over.bytes)
      .Bind(9, hand_over.samples)
      .Run();
}

std::vector<TakenSamples> Outbox::Taken() const {
  std::vector<TakenSamples> taken;
  Query query = file_->Prepare("SELECT file, database FROM taken_samples ORDER BY rowid");
  while (query.Next()) taken.push_back({query.Text(0), query.Text(1)});
  return taken;
}

void Outbox::ForgetTaken(const std::string& file) {
  file_->Prepare("DELETE FROM taken_samples WHERE file = ?").Bind(1, file).Run();
}

void Outbox::ForEach(bool all, const std::function<void(const KeptHandOver&)>& show, std::int64_t after,
                     std::int64_t count) const {
  Query query = file_->Prepare(std::string(kColumns) + "WHERE id > ? " + (all ? "" : "AND standing = 0 ") +
                               "ORDER BY id LIMIT ?");
  query.Bind(1, after).Bind(2, count);
  while (query.Next()) show(Read(query));
}

void Outbox::ForEachNewestFirst(const std::function<bool(const KeptHandOver&)>& show) const {
  Query query = file_->Prepare(std::string(kColumns) + "WHERE standing = 0 ORDER BY id DESC");
  while (query.Next() && show(Read(query))) {
  }
}

std::int64_t Outbox::LastId() const {
  return file_->Number("SELECT MAX(id) FROM hand_overs");
}

std::optional<KeptHandOver> Outbox::Find(std::int64_t id) const {
  Query query = file_->Prepare(std::string(kColumns) + "WHERE id = ?");
  query.Bind(1, id);
  return query.Next() ? std::optional(Read(query)) : std::nullopt;
}

void Outbox::CountDeliveries(const std::vector<std::int64_t>& ids) {
  Transaction transaction(*file_);
  Query query = file_->Prepare("UPDATE hand_overs SET deliveries = deliveries + 1 WHERE id = ?");
  for (const std::int64_t id : ids) query.Bind(1, id).Run();
  transaction.Commit();
}

std::int64_t Outbox::UsedBytes() const {
  return (file_->Number("PRAGMA page_count") - file_->Number("PRAGMA freelist_count")) *
         file_->Number("PRAGMA page_size");
}

void Outbox::DropOldest(const std::string& which, std::int64_t bytes, std::int64_t& dropped,
                        const std::function<void()>& tell) {
  constexpr int kAtOnce = 100;
  while (UsedBytes() > bytes) {
    tell();
    std::vector<std::int64_t> oldest;
    Query query = file_->Prepare("SELECT id FROM hand_overs WHERE " + which + " ORDER BY id LIMIT ?");
    query.Bind(1, kAtOnce);
    while (query.Next()) oldest.push_back(query.Integer(0));
    if (oldest.empty()) return;
    for (const std::int64_t id : oldest) {
      if (UsedBytes() <= bytes) break;
      file_->Prepare("DELETE FROM hand_overs WHERE id = ?").Bind(1, id).Run();
      ++dropped;
    }
  }
}

Pruned Outbox::Prune(const OutboxLimits& limits, const std::function<void(const Pruned&)>& tell) {
  Pruned pruned;
  const auto tell_so_far = [&] {
    if (tell) tell(pruned);
  };
  const WorkWatch watch(*file_, tell_so_far);  // for the statements that last
  Transaction transaction(*file_);
  const std::int64_t oldest = (Now() - limits.age).time_since_epoch().count();
  file_->Prepare("DELETE FROM hand_overs WHERE (deliveries > 0 OR standing <> 0) AND arrived_ms < ?")
      .Bind(1, oldest)
      .Run();
  pruned.delivered = file_->Changes();
  DropOldest("deliveries > 0 OR standing <> 0", limits.bytes, pruned.delivered, tell_so_far);
  DropOldest("TRUE", limits.bytes, pruned.undelivered, tell_so_far);
  file_->Prepare("INSERT INTO counts(name, number) VALUES(?1, ?2) ON CONFLICT(name) DO UPDATE SET number = number + ?2")
      .Bind(1, kDropped)
      .Bind(2, pruned.undelivered)
      .Run();
  transaction.Commit();
  if (pruned.delivered + pruned.undelivered > 0) file_->Run("VACUUM");
  return pruned;
}

OutboxFigures Outbox::Figures() const {
  const auto count = [&](const std::string& which) {
    return file_->Number("SELECT COUNT(*) FROM hand_overs WHERE " + which);
  };
  return {count("standing = 0"),
          count("standing = 0 AND deliveries = 0"),
          count("standing = 1"),
          count("standing = 2"),
          file_->Number("PRAGMA page_count") * file_->Number("PRAGMA page_size"),
          file_->Number(std::string("SELECT number FROM counts WHERE name = '") + kDropped + "'")};
}

CollectingLock::CollectingLock(const fs::path& folder, int patience_ms)
    : file_(folder / kLockName, Access::kCreate, patience_ms) {
  try {
    file_.Run("PRAGMA journal_mode = MEMORY; BEGIN EXCLUSIVE");
  } catch (const DatabaseError& failure) {
    if (failure.Code() != SQLITE_BUSY) throw;
    throw Failure(kExitFailed, "--outbox " + PathText(folder) + ": another collection into this outbox is running");
  }
}

std::string PrunedText(const Pruned& pruned) {
  return "deleted " + std::to_string(pruned.delivered) +
         " hand-overs that were delivered, replaced or sent again, and " + std::to_string(pruned.undelivered) +
         " that were not delivered";
}

std::string StandingText(Standing standing) {
  const auto number = static_cast<std::size_t>(standing);
  return number < kStandings.size() ? kStandings[number] : "unknown";
}

}  // namespace zt::telemetry::host
