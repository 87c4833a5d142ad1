#include "host/collect/sample_copy.h"

#include <array>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

#include "host/database/database_file.h"
#include "host/files.h"
#include "host/seed/sample_schema.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using Access = DatabaseFile::Access;

constexpr std::array kTables = {kThermalTable, kNetworkTable};
constexpr char kHourOfRow[] = "strftime('%Y-%m-%dT%H', substr(date_time, 1, 19))";  // as the records have it
constexpr char kFirstName[] = "first.db";
constexpr int kCopyPatienceMs = 5000;  // a writer of samples is through in less

fs::path WithSuffix(const fs::path& file, const char* suffix) {
  fs::path name = file;
  name += suffix;
  return name;
}

fs::path JournalOf(const fs::path& database) {
  return WithSuffix(database, "-journal");
}
fs::path LogOf(const fs::path& database) {
  return WithSuffix(database, "-wal");
}

std::uintmax_t SizeOf(const fs::path& file) {
  std::error_code none;
  const std::uintmax_t size = fs::file_size(file, none);
  return none ? 0 : size;
}

// Whether the file says of itself that its writers keep a write-ahead log.
bool KeepsLog(const fs::path& database) {
  constexpr std::streamoff kReadVersionPlace = 19;
  constexpr int kLogVersion = 2;
  std::ifstream file(database, std::ios::binary);
  file.seekg(kReadVersionPlace);
  return file.get() == kLogVersion;
}

// The first reader of a write-ahead log makes files beside the database, and nothing is to be written there.
bool ReaderMakesFiles(const fs::path& database) {
  return KeepsLog(database) && !fs::exists(WithSuffix(database, "-shm"));
}

struct Moment {
  fs::file_time_type written;
  std::uintmax_t size = 0;
  std::uintmax_t journal_size = 0;
  std::uintmax_t log_size = 0;
  bool operator==(const Moment&) const = default;
};

Moment Present(const fs::path& database) {
  std::error_code none;
  return {fs::last_write_time(database, none), SizeOf(database), SizeOf(JournalOf(database)), SizeOf(LogOf(database))};
}

void CopyFiles(const fs::path& database, const fs::path& copy) {
  for (const char* suffix : {"", "-journal", "-wal"}) {
    const fs::path from = WithSuffix(database, suffix);
    const fs::path to = WithSuffix(copy, suffix);
    fs::remove(to);  // not overwritten: libstdc++ on Windows refuses to
    if (!fs::exists(from)) continue;
    fs::copy_file(from, to);
    fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write);
  }
}

// The files as they are, with what a writer has left beside them; it is the copy that is put in order. Nobody holds
// what is copied so: that nobody has begun to meanwhile is seen by the files.
void CopyUndisturbed(const fs::path& database, const fs::path& copy) {
  constexpr int kAttempts = 5;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    const Moment before = Present(database);
    CopyFiles(database, copy);
    if (Present(database) == before) return;
  }
  throw DatabaseError(SQLITE_BUSY, ToText(database) + ": the file changes again and again while it is read");
}

void CopyDatabase(const fs::path& database, const fs::path& copy) {
  if (ReaderMakesFiles(database)) return CopyUndisturbed(database, copy);
  try {
    const DatabaseFile from(database, Access::kRead, kCopyPatienceMs);
    from.CopyTo(DatabaseFile(copy, Access::kCreate, kCopyPatienceMs));
  } catch (const DatabaseError& failure) {
    // A journal of a writer that died would have to be rolled back first.
    if (failure.Code() != SQLITE_READONLY) throw;
    CopyUndisturbed(database, copy);
  }
}

// As SQL takes it in ATTACH: a text.
std::string QuotedText(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) quoted.append(character == '\'' ? 2 : 1, character);
  return quoted + "'";
}

bool HasTable(const DatabaseFile& database, const std::string& schema, const std::string& table) {
  return database.Number("SELECT COUNT(*) FROM " + schema + ".sqlite_master WHERE type = 'table' AND name = '" + table +
                         "' COLLATE NOCASE") > 0;
}

// The columns of a row, each as `of` has it: "a, b, c".
std::string Columns(const DatabaseFile& database, const std::string& schema, const std::string& table,
                    const std::string& of) {
  std::string list;
  Query columns = database.Prepare("SELECT name FROM pragma_table_info(?, ?)");
  columns.Bind(1, table).Bind(2, schema);
  while (columns.Next()) list += (list.empty() ? "" : ", ") + of + QuotedName(columns.Text(0));
  return list;
}

// The rows of `main` that stand in "other" as well, with the same number and the same values.
std::string RowsOfBoth(const DatabaseFile& database, const std::string& table) {
  return "FROM main." + table + " WHERE EXISTS (SELECT 1 FROM other." + table + " AS o WHERE o.rowid = " + table +
         ".rowid AND (" + Columns(database, "main", table, "o.") + ") IS (" +
         Columns(database, "main", table, table + ".") + "))";
}

void Attach(const DatabaseFile& database, const fs::path& other) {
  database.Run("ATTACH " + QuotedText(ToText(other)) + " AS other");
}

// Deletes from `database` the rows that `other` has too.
std::int64_t DeleteRowsOf(const DatabaseFile& database, const fs::path& other) {
  Attach(database, other);
  std::int64_t deleted = 0;
  Transaction transaction(database);
  for (const std::string table : kTables) {
    if (!HasTable(database, "main", table) || !HasTable(database, "other", table)) continue;
    database.Run("DELETE " + RowsOfBoth(database, table));
    deleted += database.Changes();
  }
  transaction.Commit();
  return deleted;
}

// A checksum of texts in their order: FNV-1a, 64 bits, and how many texts there were.
class Digest {
 public:
  void Add(const std::string& text) {
    for (const char byte : text) Mix(static_cast<unsigned char>(byte));
    Mix(kEnd);
    ++count_;
  }
  std::string Text() const { return std::to_string(count_) + "-" + std::to_string(sum_); }

 private:
  static constexpr unsigned kEnd = 0x100;  // what no byte is

  void Mix(unsigned value) {
    constexpr std::uint64_t kPrime = 0x100000001B3;
    sum_ = (sum_ ^ value) * kPrime;
  }

  std::uint64_t sum_ = 0xCBF29CE484222325;
  std::uint64_t count_ = 0;
};

std::int64_t RowsIn(const DatabaseFile& database) {
  std::int64_t rows = 0;
  for (const std::string table : kTables) {
    if (HasTable(database, "main", table)) rows += database.Number("SELECT COUNT(*) FROM " + table);
  }
  return rows;
}

}  // namespace

SampleCopy::SampleCopy(fs::path database, const fs::path& parent)
    : database_(std::move(database)),
      folder_(parent),
      first_(folder_.Path() / kFirstName),
      working_(folder_.Path() / kDatabaseName) {
  RemoveOldTemporaryFolders(parent);
  try {
    Copy();
  } catch (const std::exception& failure) {
    trouble_ = failure.what();
    std::error_code ignored;
    fs::remove(first_, ignored);
    fs::remove(working_, ignored);
  }
}

void SampleCopy::Copy() {
  std::error_code error;
  if (!fs::exists(database_, error)) {
    if (error) throw std::system_error(error, ToText(database_));
    return;
  }
  CopyDatabase(database_, first_);
  const DatabaseFile first(first_, Access::kWrite, 0);
  first.Run("PRAGMA journal_mode = DELETE");  // also brings in a log that came with it
  first.CopyTo(DatabaseFile(working_, Access::kCreate, 0));
}

void SampleCopy::Forget(const fs::path& taken) const {
  for (const fs::path& copy : {first_, working_}) {
    if (fs::exists(copy)) DeleteRowsOf(DatabaseFile(copy, Access::kWrite, 0), taken);
  }
}

void SampleCopy::Take(const std::string& table, const std::string& hour) const {
  if (!fs::exists(working_)) return;
  const DatabaseFile working(working_, Access::kWrite, 0);
  if (!HasTable(working, "main", table)) return;
  working.Prepare("DELETE FROM " + table + " WHERE " + kHourOfRow + " = ?").Bind(1, hour).Run();
}

std::int64_t SampleCopy::KeepTaken(const fs::path& file) const {
  if (!fs::exists(first_)) return 0;
  {
    const DatabaseFile taken(first_, Access::kWrite, 0);
    if (RowsIn(taken) == 0) return 0;
    DeleteRowsOf(taken, working_);
    if (RowsIn(taken) == 0) return 0;
  }
  const DatabaseFile taken(first_, Access::kRead, 0);
  const DatabaseFile kept(file, Access::kCreate, 0);
  kept.Run("PRAGMA synchronous = FULL");
  taken.CopyTo(kept);
  return RowsIn(taken);
}

std::map<std::pair<std::string, std::string>, std::string> DigestsOfHours(const fs::path& taken) {
  const DatabaseFile file(taken, Access::kRead, 0);
  std::map<std::pair<std::string, std::string>, Digest> digests;
  for (const std::string table : kTables) {
    if (!HasTable(file, "main", table)) continue;
    Query rows = file.Prepare(std::string("SELECT ") + kHourOfRow + ", rowid, * FROM " + table + " ORDER BY rowid");
    while (rows.Next()) {
      Digest& digest = digests[{table, rows.Text(0)}];
      for (int column = 1; column < rows.Columns(); ++column) digest.Add(rows.Bytes(column));
    }
  }
  std::map<std::pair<std::string, std::string>, std::string> texts;
  for (const auto& [hour, digest] : digests) texts[hour] = digest.Text();
  return texts;
}

std::int64_t DeleteTakenSamples(const fs::path& database, const fs::path& taken, int patience_ms) {
  if (!fs::exists(database) || !fs::exists(taken)) return 0;
  return DeleteRowsOf(DatabaseFile(database, Access::kWrite, patience_ms), taken);
}

}  // namespace zt::telemetry::host
