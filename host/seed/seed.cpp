#include "host/seed/seed.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"
#include "host/seed/day_pattern.h"
#include "host/seed/network_simulation.h"
#include "host/seed/sample_schema.h"
#include "host/seed/sample_writer.h"
#include "host/seed/thermal_simulation.h"
#include "host/utc_time.h"
#include "host/views/figures.h"

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;

// The form of a sample's time has four digits for the year.
constexpr chrono::sys_days kEarliest = chrono::year{1} / chrono::January / 1;
// Keeps the two kinds of samples apart although both start from one number.
constexpr std::uint64_t kNetworkSeedOffset = 0x5EED;

chrono::sys_seconds FirstSampleTime(const SeedCommand& command) {
  const auto until = command.until.value_or(chrono::floor<chrono::seconds>(chrono::system_clock::now()));
  const auto first = until - chrono::hours(command.hours);
  if (first >= kEarliest) return first;
  throw WrongUsage("--until " + FormatUtcTime(until) + ": " + std::to_string(command.hours) +
                   " hours of samples would begin before the year 1");
}

// A line on a stream each time another tenth is done, for short work each time another day is.
class Progress {
 public:
  Progress(std::ostream& stream, std::uint64_t total)
      : stream_(stream), total_(total), step_(std::max(total / kParts, kMinutesPerDay)) {}

  void Done(std::uint64_t minutes) {
    if (minutes % step_ != 0 || minutes == total_) return;
    stream_ << "seed: " << minutes * 100 / total_ << " %, " << GroupDigits(std::to_string(minutes)) << " of "
            << GroupDigits(std::to_string(total_)) << " minutes" << std::endl;
  }

 private:
  static constexpr std::uint64_t kParts = 10;
  static constexpr std::uint64_t kMinutesPerDay = std::uint64_t{24} * kMinutesPerHour;

  std::ostream& stream_;
  std::uint64_t total_;
  std::uint64_t step_;
};

}  // namespace

void Seed(const SeedCommand& command, std::ostream& progress) {
  const chrono::sys_seconds first = FirstSampleTime(command);
  const std::uint64_t minutes = std::uint64_t{command.hours} * kMinutesPerHour;
  MakeWritableFolder(command.database_dir, "--database-dir");
  const std::filesystem::path database = command.database_dir / kDatabaseName;

  SampleWriter writer(database);
  ThermalSimulation thermal(command.random_seed);
  NetworkSimulation network(command.random_seed + kNetworkSeedOffset, command.interfaces);
  Progress shown(progress, minutes);
  for (std::uint64_t minute = 0; minute < minutes; ++minute) {
    const chrono::sys_seconds time = first + chrono::minutes(minute);
    writer.Add(thermal.Next(time));
    for (const NetworkSample& sample : network.Next(time)) writer.Add(sample);
    shown.Done(minute + 1);
  }
  writer.Commit();
  progress << "seed: " << GroupDigits(std::to_string(minutes)) << " thermal and "
           << GroupDigits(std::to_string(minutes * command.interfaces)) << " network samples from "
           << FormatUtcTime(first) << " on are in " << PathText(database) << std::endl;
}

}  // namespace zt::telemetry::host
