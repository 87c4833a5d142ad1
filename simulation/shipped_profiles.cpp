#include <algorithm>

#include "simulation/embedded_profiles.h"
#include "simulation/profile.h"

namespace zt::simulation {
namespace {

Machine Parse(const EmbeddedProfile& profile) {
  return ParseProfile(profile.json, std::string(profile.name) + ".json");
}

std::string NamesOf(const std::vector<ShippedProfile>& profiles) {
  std::string names;
  for (const ShippedProfile& profile : profiles) names += (names.empty() ? "" : ", ") + profile.name;
  return names;
}

}  // namespace

std::vector<ShippedProfile> ShippedProfiles() {
  std::vector<ShippedProfile> result;
  for (const EmbeddedProfile& profile : EmbeddedProfiles()) {
    result.push_back({std::string(profile.name), Parse(profile).description});
  }
  std::sort(result.begin(), result.end(), [](const auto& left, const auto& right) { return left.name < right.name; });
  return result;
}

Machine ReadShippedProfile(std::string_view name) {
  const std::vector<EmbeddedProfile> profiles = EmbeddedProfiles();
  const auto found = std::find_if(profiles.begin(), profiles.end(),
                                  [name](const EmbeddedProfile& profile) { return profile.name == name; });
  if (found == profiles.end()) {
    throw ProfileError("No machine profile of the name \"" + std::string(name) +
                       "\" ships with the program, expected one of: " + NamesOf(ShippedProfiles()));
  }
  return Parse(*found);
}

}  // namespace zt::simulation
