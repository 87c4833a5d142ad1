#pragma once

#include <string_view>
#include <vector>

namespace zt::simulation {

struct EmbeddedProfile {
  std::string_view name;
  std::string_view json;
};

/// The profiles of simulation/profiles, as the build embeds them (embed_profiles.cmake).
std::vector<EmbeddedProfile> EmbeddedProfiles();

}  // namespace zt::simulation
