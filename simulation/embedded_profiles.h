#pragma once

#include <string_view>
#include <vector>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

struct EmbeddedProfile {
  std::string_view name;
  std::string_view json;
};

/// The profiles of simulation/profiles, as the build embeds them (embed_profiles.cmake).
ZT_SIMULATION_EXPORT std::vector<EmbeddedProfile> EmbeddedProfiles();

}  // namespace zt::simulation
