#include "host/doctor/stored_samples.h"

#include <sqlite3.h>

#include <stdexcept>
#include <string>
#include <system_error>

#include "host/files.h"
#include "host/program_environment.h"
#include "host/seed/sample_schema.h"
#include "host/sqlite_handles.h"
#include "host/views/figures.h"

namespace zt::telemetry::host {
namespace {

using inspection::SourceReport;
using inspection::SourceState;

constexpr char kSource[] = "Stored samples";
constexpr char kThermalCount[] = "SELECT COUNT(*) FROM ThermalData";
constexpr char kNetworkCount[] = "SELECT COUNT(*) FROM NetworkData";
constexpr int kReaderPatienceMs = 200;  // as long as a collection waits for a writer

[[noreturn]] void FailWith(sqlite3* database) {
  throw std::runtime_error(sqlite3_errmsg(database));
}

Database Open(const std::filesystem::path& file) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(ToText(file).c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
  Database database(opened);
  if (result != SQLITE_OK) FailWith(opened);
  sqlite3_busy_timeout(opened, kReaderPatienceMs);
  return database;
}

std::string Count(sqlite3* database, const char* query) {
  constexpr int kUpToNul = -1;
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database, query, kUpToNul, &prepared, nullptr);
  const Statement statement(prepared);
  if (result != SQLITE_OK || sqlite3_step(prepared) != SQLITE_ROW) FailWith(database);
  return GroupDigits(std::to_string(sqlite3_column_int64(prepared, 0)));
}

SourceReport Read(const std::filesystem::path& file) {
  try {
    const Database database = Open(file);
    return {kSource,
            SourceState::kPresent,
            Count(database.get(), kThermalCount) + " thermal and " + Count(database.get(), kNetworkCount) +
                " network samples",
            {},
            {}};
  } catch (const std::runtime_error& error) {
    return {kSource, SourceState::kFailed, PathText(file) + ": " + error.what(), {}, {}};
  }
}

// That nobody may look is not that nothing is there.
SourceReport LookFor(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::exists(file, error)) return Read(file);
  if (error) return {kSource, SourceState::kFailed, PathText(file) + ": " + error.message(), {}, {}};
  return {kSource, SourceState::kAbsent, "there is no " + PathText(file), {}, {}};
}

}  // namespace

SourceReport InspectStoredSamples(const std::filesystem::path& folder) {
  const auto start = std::chrono::steady_clock::now();
  const std::filesystem::path file = folder / kDatabaseName;
  SourceReport report = LookFor(file);
  report.time = std::chrono::steady_clock::now() - start;
  return report;
}

}  // namespace zt::telemetry::host
