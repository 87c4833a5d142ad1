#include "backlog.h"

#include <stdexcept>

#include "host/seed/sample_schema.h"
#include "store/sqlite_handles.h"

namespace zt::bench {
namespace {

namespace store = telemetry::collector::performancesamples;

constexpr int kMinutesPerDay = 24 * 60;

// ?1: the number of minutes. The figures only have to differ from row to row.
constexpr const char* kThermalRows = R"(
WITH RECURSIVE minutes(n) AS (SELECT 0 WHERE ?1 > 0 UNION ALL SELECT n + 1 FROM minutes WHERE n + 1 < ?1)
INSERT INTO ThermalData
SELECT NULL, strftime('%Y-%m-%dT%H:%M:%S.000Z', '2026-01-01', n || ' minutes'), 45 + n % 40 + 0.5, 38 + n % 7,
    33 + n % 5, 2000 + n * 37 % 900, 2000 + n * 37 % 900 / 100 * 100, 20 + n % 30, 2100 + n * 41 % 900,
    2100 + n * 41 % 900 / 100 * 100, 20 + n % 25
FROM minutes;
)";

constexpr const char* kNetworkRows = R"(
WITH RECURSIVE
    minutes(n) AS (SELECT 0 WHERE ?1 > 0 UNION ALL SELECT n + 1 FROM minutes WHERE n + 1 < ?1),
    interfaces(i) AS (VALUES(0), (1), (2))
INSERT INTO NetworkData
SELECT NULL, strftime('%Y-%m-%dT%H:%M:%S.000Z', '2026-01-01', n || ' minutes'),
    '{0A1B2C3D-0000-4000-8000-00000000000' || i || '}', 'Private', i = 0, 36 + n / 300 % 3 * 4, '802.11ax',
    1200, 800 + n % 400, 700 + n % 500, -40 - n % 45, n * 7919 % 5000000, n * 104729 % 900000, n % 6, n % 4, i = 2,
    1, n % 97 <> 0, 20 + n % 60, n % 3, n % 41 = 0, n % 2, CAST('profile ' || n / 20 % 3 AS BLOB),
    'WPA2PSK', 'AES'
FROM minutes CROSS JOIN interfaces;
)";

void Expect(bool done, const char* step) {
  if (!done) throw std::runtime_error(std::string("The backlog could not be written: ") + step);
}

void CreateTable(sqlite3* database, const std::string& name, const std::string& columns) {
  Expect(store::Run(database, "CREATE TABLE " + name + "(" + columns + ")"), sqlite3_errmsg(database));
}

void InsertRows(sqlite3* database, const char* sql, int minutes) {
  const store::Statement statement = store::Prepare(database, sql);
  Expect(statement != nullptr, sqlite3_errmsg(database));
  Expect(sqlite3_bind_int(statement.get(), 1, minutes) == SQLITE_OK, sqlite3_errmsg(database));
  Expect(sqlite3_step(statement.get()) == SQLITE_DONE, sqlite3_errmsg(database));
}

}  // namespace

void WriteBacklog(const std::string& path, int days) {
  sqlite3* handle = nullptr;
  const int outcome = sqlite3_open(path.c_str(), &handle);
  const store::Database database(handle);
  Expect(outcome == SQLITE_OK, path.c_str());
  CreateTable(handle, telemetry::host::kThermalTable, telemetry::host::kThermalColumns);
  CreateTable(handle, telemetry::host::kNetworkTable, telemetry::host::kNetworkColumns);
  InsertRows(handle, kThermalRows, days * kMinutesPerDay);
  InsertRows(handle, kNetworkRows, days * kMinutesPerDay);
}

}  // namespace zt::bench
