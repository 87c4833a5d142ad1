#pragma once

#include <algorithm>
#include <string>

#include "types/network_interface_info.h"

namespace zt::telemetry::collector::performancesamples {

/// The first interface whose adapter has this GUID, in the same spelling; null without one.
inline types::NetworkInterfaceInfo* FindByGuid(types::NetworkInterfaces& interfaces, const std::string& guid) {
  const auto found =
      std::find_if(interfaces.begin(), interfaces.end(), [&](const auto& known) { return known.second.guid == guid; });
  return found != interfaces.end() ? &found->second : nullptr;
}

}  // namespace zt::telemetry::collector::performancesamples
