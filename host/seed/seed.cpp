#include "host/seed/seed.h"

#include <cstdint>
#include <string>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"
#include "host/progress.h"
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

}  // namespace

void Seed(const SeedCommand& command, std::ostream& err, std::ostream* terminal) {
  const chrono::sys_seconds first = FirstSampleTime(command);
  const std::uint64_t minutes = std::uint64_t{command.hours} * kMinutesPerHour;
  MakeWritableFolder(command.database_dir, "--database-dir");
  const std::filesystem::path database = command.database_dir / kDatabaseName;

  SampleWriter writer(database);
  ThermalSimulation thermal(command.random_seed);
  NetworkSimulation network(command.random_seed + kNetworkSeedOffset, command.interfaces);
  Progress progress(terminal, "seed");
  for (std::uint64_t minute = 0; minute < minutes; ++minute) {
    const chrono::sys_seconds time = first + chrono::minutes(minute);
    writer.Add(thermal.Next(time));
    for (const NetworkSample& sample : network.Next(time)) writer.Add(sample);
    progress.Show(minute + 1, minutes, "minutes");
  }
  writer.Commit();
  err << "seed: " << GroupDigits(std::to_string(minutes)) << " thermal and "
      << GroupDigits(std::to_string(minutes * command.interfaces)) << " network samples from " << FormatUtcTime(first)
      << " on are in " << PathText(database) << std::endl;
}

}  // namespace zt::telemetry::host
