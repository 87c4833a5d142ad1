#include "host/database/database_file.h"

#include <utility>

#include "host/files.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

constexpr int kPrimaryCode = 0xFF;

int Flags(DatabaseFile::Access access) {
  switch (access) {
    case DatabaseFile::Access::kRead:
      return SQLITE_OPEN_READONLY;
    case DatabaseFile::Access::kWrite:
      return SQLITE_OPEN_READWRITE;
    case DatabaseFile::Access::kCreate:
      break;
  }
  return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
}

DatabaseError ErrorOf(sqlite3* database, const std::string& file) {
  return {sqlite3_errcode(database) & kPrimaryCode, file + ": " + sqlite3_errmsg(database)};
}

}  // namespace

Query::Query(sqlite3* database, std::string file, const std::string& sql) : file_(std::move(file)) {
  constexpr int kUpToNul = -1;
  sqlite3_stmt* prepared = nullptr;
  const int outcome = sqlite3_prepare_v2(database, sql.c_str(), kUpToNul, &prepared, nullptr);
  statement_.reset(prepared);
  if (outcome != SQLITE_OK) throw ErrorOf(database, file_);
}

Query& Query::Bind(int parameter, std::int64_t number) {
  Require(sqlite3_bind_int64(statement_.get(), parameter, number));
  return *this;
}

Query& Query::Bind(int parameter, std::string_view text) {
  Require(sqlite3_bind_text(statement_.get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT));
  return *this;
}

Query& Query::BindBytes(int parameter, std::string_view bytes) {
  Require(
      sqlite3_bind_blob(statement_.get(), parameter, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT));
  return *this;
}

bool Query::Next() {
  const int outcome = sqlite3_step(statement_.get());
  if (outcome != SQLITE_ROW && outcome != SQLITE_DONE) Require(outcome);
  return outcome == SQLITE_ROW;
}

void Query::Run() {
  while (Next()) {
  }
  Reset();
}

void Query::Reset() {
  sqlite3_reset(statement_.get());  // a failure was told by the step that it belongs to
}

std::int64_t Query::Integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string Query::Text(int column) const {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  return text == nullptr ? std::string()
                         : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
}

std::string Query::Bytes(int column) const {
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  return bytes == nullptr
             ? std::string()
             : std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
}

void Query::Require(int outcome) const {
  if (outcome != SQLITE_OK) throw ErrorOf(sqlite3_db_handle(statement_.get()), file_);
}

DatabaseFile::DatabaseFile(const std::filesystem::path& file, Access access, int patience_ms) : file_(PathText(file)) {
  sqlite3* opened = nullptr;
  const int outcome = sqlite3_open_v2(ToText(file).c_str(), &opened, Flags(access), nullptr);
  handle_.reset(opened);
  if (outcome != SQLITE_OK) Fail();
  sqlite3_busy_timeout(opened, patience_ms);
}

Query DatabaseFile::Prepare(const std::string& sql) const {
  return {handle_.get(), file_, sql};
}

void DatabaseFile::Run(const std::string& sql) const {
  if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail();
}

std::int64_t DatabaseFile::Number(const std::string& sql) const {
  Query query = Prepare(sql);
  return query.Next() ? query.Integer(0) : 0;
}

void DatabaseFile::CopyTo(const DatabaseFile& copy) const {
  constexpr const char* kMain = "main";
  constexpr int kAllPages = -1;
  sqlite3_backup* const backup = sqlite3_backup_init(copy.handle_.get(), kMain, handle_.get(), kMain);
  if (backup == nullptr) copy.Fail();
  const int outcome = sqlite3_backup_step(backup, kAllPages);
  sqlite3_backup_finish(backup);
  if (outcome == SQLITE_DONE) return;
  throw DatabaseError(outcome & kPrimaryCode, file_ + ": " + sqlite3_errstr(outcome));
}

void DatabaseFile::Fail() const {
  if (handle_ == nullptr) throw DatabaseError(SQLITE_NOMEM, file_ + ": out of memory");
  throw ErrorOf(handle_.get(), file_);
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.Run("ROLLBACK");
  } catch (const DatabaseError&) {  // SQLite has rolled back already, or does so when the connection is closed
  }
}

void Transaction::Commit() {
  database_.Run("COMMIT");
  open_ = false;
}

WorkWatch::WorkWatch(const DatabaseFile& database, std::function<void()> tell)
    : database_(database), tell_(std::move(tell)) {
  constexpr int kStepsBetween = 20'000;  // some milliseconds
  const auto call = [](void* operation) noexcept {
    (*static_cast<std::function<void()>*>(operation))();
    return 0;  // go on
  };
  sqlite3_progress_handler(database_.handle_.get(), kStepsBetween, call, &tell_);
}

WorkWatch::~WorkWatch() {
  sqlite3_progress_handler(database_.handle_.get(), 0, nullptr, nullptr);
}

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char character : name) quoted.append(character == '"' ? 2 : 1, character);
  return quoted + '"';
}

}  // namespace zt::telemetry::host
