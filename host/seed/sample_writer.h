#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "host/seed/samples.h"
#include "host/sqlite_handles.h"

namespace zt::telemetry::host {

/// Adds samples to a database file, in one transaction: without `Commit` the file stays as it was.
class SampleWriter {
 public:
  /// Opens `database` and makes the two tables in it, both where missing. Throws `Failure` with wrong usage when the
  /// file is no database, has other tables of these names, or another program keeps it locked for several seconds.
  explicit SampleWriter(const std::filesystem::path& database);

  /// Throws `Failure` when the row cannot be written (a full disk).
  void Add(const ThermalSample& sample);
  void Add(const NetworkSample& sample);

  void Commit();

 private:
  Database Open() const;
  Statement Prepare(const std::string& sql) const;
  void Execute(const std::string& sql) const;
  std::string Complaint() const;
  template <typename Sample, typename Columns>
  void Insert(sqlite3_stmt* statement, const Columns& columns, const Sample& sample) const;

  std::filesystem::path file_;
  Database database_;
  Statement insert_thermal_;
  Statement insert_network_;
};

}  // namespace zt::telemetry::host
