#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/sqlite_handles.h"

namespace zt::endurance {

inline constexpr std::int64_t kMinutesPerHour = 60;

/// "2026-03-07T12:34:00.000Z", `minute` minutes after midnight of that day.
std::string SampleTime(std::int64_t minute);

/// The host's database of samples, as the component that fills it has it open. Each operation waits for other
/// components' locks as that component does, and throws where it fails.
class SampleFile {
 public:
  /// Opens `path` (UTF-8), and makes the tables where there are none.
  explicit SampleFile(const std::string& path, const std::string& journal_mode = "DELETE");

  void Execute(const std::string& sql);

  /// One sample of each table at `minute`: the network's with an interface and a profile that no other minute of its
  /// hour has, so that a record tells which samples it is made of.
  void AddMinute(std::int64_t minute);

  /// The numbers in the first column of a query.
  std::vector<std::int64_t> Numbers(const std::string& sql);

 private:
  void Check(int outcome, const std::string& sql) const;

  telemetry::host::Database database_;
};

}  // namespace zt::endurance
