#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// A machine that ships with the program.
struct ShippedMachine {
  std::string name;
  std::string description;
};

/// The machines that `--machine` takes by name; none in a build that samples the machine it runs on.
std::vector<ShippedMachine> ShippedMachines();

/// Makes `name_or_file` (UTF-8), a shipped machine's name or a profile file, the machine that is sampled. Without a
/// value: the machine that the program runs on, where the build can sample it. Throws `Failure` with wrong usage.
///
/// The one place where the host knows of the simulated machine: each build links its own definition.
void ChooseMachine(const std::optional<std::string>& name_or_file);

}  // namespace zt::telemetry::host
