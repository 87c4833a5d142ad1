#include "host/machine_choice.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/failure.h"
#include "host/program_environment.h"
#include "simulation/profile.h"

namespace zt::telemetry::host {
namespace {

std::string ShippedNames() {
  std::string names;
  for (const simulation::ShippedProfile& profile : simulation::ShippedProfiles()) {
    names += (names.empty() ? "" : ", ") + profile.name;
  }
  return names;
}

bool IsShipped(const std::string& name) {
  const std::vector<simulation::ShippedProfile> profiles = simulation::ShippedProfiles();
  return std::any_of(profiles.begin(), profiles.end(), [&](const auto& profile) { return profile.name == name; });
}

simulation::Machine ReadMachine(const std::string& name_or_file) {
  if (IsShipped(name_or_file)) return simulation::ReadShippedProfile(name_or_file);
  const std::filesystem::path file = PathFromText(name_or_file);
  std::error_code error;
  if (!std::filesystem::exists(file, error)) {
    throw WrongUsage("--machine " + name_or_file + ": there is neither a machine nor a file of this name; expected " +
                     ShippedNames() + ", or the file of a machine profile");
  }
  if (std::filesystem::is_directory(file, error)) {
    throw WrongUsage("--machine " + name_or_file + ": this is a folder, not the file of a machine profile");
  }
  return simulation::ReadProfile(file);
}

}  // namespace

std::vector<ShippedMachine> ShippedMachines() {
  std::vector<ShippedMachine> machines;
  for (const simulation::ShippedProfile& profile : simulation::ShippedProfiles()) {
    machines.push_back({profile.name, profile.description});
  }
  return machines;
}

void ChooseMachine(const std::optional<std::string>& name_or_file) {
  if (!name_or_file.has_value()) {
    throw WrongUsage("--machine is missing: this build samples simulated machines; expected " + ShippedNames() +
                     ", or the file of a machine profile");
  }
  try {
    simulation::UseMachine(ReadMachine(*name_or_file));
  } catch (const simulation::ProfileError& error) {
    throw WrongUsage("--machine " + *name_or_file + ": " + error.what());
  }
}

}  // namespace zt::telemetry::host
