#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "host/temporary_folder.h"

namespace zt::telemetry::host {

/// What a collection works on in the place of the stored samples: a copy of the whole database as it was at one moment,
/// in a folder of its own. A collection empties the tables behind it whatever becomes of its records; here it empties
/// the copy, and the samples themselves stay until somebody says that the records are safe.
class SampleCopy {
 public:
  /// Copies `database`. One that is not there gives a folder without a database. Nothing is written into `database` or
  /// beside it. A database that cannot be read gives no copy either, and `Trouble` says why.
  explicit SampleCopy(std::filesystem::path database,
                      const std::filesystem::path& parent = std::filesystem::temp_directory_path());

  /// The folder for the collection to work in, with "ssm.db" where there is one.
  const std::filesystem::path& Folder() const { return folder_.Path(); }

  /// Why there is no copy of a database that is there: its file, and the reason.
  const std::optional<std::string>& Trouble() const { return trouble_; }

  /// Of the copy, takes away the rows that `taken` (a file of `KeepTaken`) holds: their records are safe already.
  void Forget(const std::filesystem::path& taken) const;

  /// A record of an hour ("2026-03-07T12") of `table` was handed over: its rows are taken too where the collection
  /// could not delete them. Throws `DatabaseError`.
  void Take(const std::string& table, const std::string& hour) const;

  /// Writes the rows that the collection took, those that it has deleted and those of `Take`, into a new database,
  /// durably. Returns how many there are; without any there is no file. Throws `DatabaseError`.
  std::int64_t KeepTaken(const std::filesystem::path& file) const;

 private:
  void Copy();

  std::filesystem::path database_;
  TemporaryFolder folder_;
  std::filesystem::path first_;    // as it was copied
  std::filesystem::path working_;  // the collection's
  std::optional<std::string> trouble_;
};

/// Which samples a file of `SampleCopy::KeepTaken` holds: by table ("ThermalData") and hour ("2026-03-07T12") a text
/// that is the same for the same rows. Throws `DatabaseError`.
std::map<std::pair<std::string, std::string>, std::string> DigestsOfHours(const std::filesystem::path& taken);

/// Deletes from `database`, in one transaction, the rows that `taken` (a file of `SampleCopy::KeepTaken`) holds and
/// that are there unchanged. Rows that were added since stay. Waits up to `patience_ms` for writers. Returns how many
/// were deleted. Throws `DatabaseError`, and then nothing was.
std::int64_t DeleteTakenSamples(const std::filesystem::path& database, const std::filesystem::path& taken,
                                int patience_ms);

}  // namespace zt::telemetry::host
