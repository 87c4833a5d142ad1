#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/machine.h"

namespace zt::simulation {

/// A profile that cannot be used; the text names the file, the path to the key, and what was expected there. Exported,
/// so that it is one type for whoever throws and catches it: not every C++ library goes by the name alone.
class ZT_SIMULATION_EXPORT ProfileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a profile's JSON text. `name` stands for the file in errors. Throws `ProfileError`.
ZT_SIMULATION_EXPORT Machine ParseProfile(std::string_view json, const std::string& name);

/// Reads a profile file. Throws `ProfileError`, also when the file cannot be read.
ZT_SIMULATION_EXPORT Machine ReadProfile(const std::filesystem::path& file);

/// A profile that ships with the program.
struct ShippedProfile {
  std::string name;
  std::string description;
};

/// The shipped profiles in alphabetical order; they are part of the library and need no file.
ZT_SIMULATION_EXPORT std::vector<ShippedProfile> ShippedProfiles();

/// The shipped profile `name` ("convertible-laptop"). Throws `ProfileError` that lists the names for an unknown one.
ZT_SIMULATION_EXPORT Machine ReadShippedProfile(std::string_view name);

}  // namespace zt::simulation
