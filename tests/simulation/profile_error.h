#pragma once

#include <string>
#include <string_view>

#include "simulation/profile.h"

namespace zt::tests {

/// The text of the error that a profile "p.json" raises; empty when it raises none.
inline std::string ErrorOf(std::string_view json) {
  try {
    simulation::ParseProfile(json, "p.json");
    return {};
  } catch (const simulation::ProfileError& error) {
    return error.what();
  }
}

}  // namespace zt::tests
