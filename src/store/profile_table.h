#pragma once

#include <sqlite3.h>

#include "store/sqlite_handles.h"

namespace zt::telemetry::collector::performancesamples {

/// Table of the connection's own that stands for "NetworkData" where the summary query looks for the Wi-Fi profiles of
/// an hour and interface: the same rows in the same order, `date_time` and the compared columns of them, without some
/// that say what an earlier row of their hour says to the bit. The query takes each profile once, so that repetitions
/// do not count.
inline constexpr const char* kProfileTable = "zt_profiles";
inline constexpr const char* kComparedColumns =
    "interface_device_id, profile_name_hash, profile_authentication, profile_encryption";
inline constexpr int kNumberOfProfileColumns = 5;

/// Makes the table, empty, its columns with the types and collations of the sample table, so that they compare alike.
bool MakeProfileTable(sqlite3* database);

/// A statement that adds one row, bound to its parameters from 1 on. Null on failure.
Statement PrepareProfileInsertion(sqlite3* database);

/// To be called once all rows are there: an index on what the query compares.
bool IndexProfileTable(sqlite3* database);

}  // namespace zt::telemetry::collector::performancesamples
