#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>

namespace zt::telemetry::fleet {

/// The form in which simulated records are written.
enum class OutputForm { kLines, kDelimited };

/// `zt-telemetry-forward simulate`
struct SimulateCommand {
  std::uint32_t machines = 0;
  std::uint32_t hours = 0;
  std::uint32_t first_machine = 0;
  std::uint64_t random_seed = 1;
  std::uint32_t threads = 1;
  std::chrono::sys_seconds until = std::chrono::sys_days(std::chrono::year{2026} / 3 / 7) + std::chrono::hours(14);
  bool raw = false;
  bool count_only = false;
  std::optional<std::filesystem::path> config;  // to Kafka
  std::optional<std::filesystem::path> output;
  std::optional<std::filesystem::path> spool;
  OutputForm form = OutputForm::kLines;
};

/// Makes the records of simulated machines and gives them where the command says; returns the program's exit code.
/// Throws `host::Failure`.
int Simulate(const SimulateCommand& command, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::fleet
