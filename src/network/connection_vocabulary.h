#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

/// The words for what the system numbers about connections.
namespace zt::telemetry::collector::performancesamples {

using Vocabulary = std::unordered_map<std::int32_t, std::string>;

/// `NetConnectionStatus` of Win32_NetworkAdapter.
extern const Vocabulary kConnectionStatusTexts;

/// `NLM_NETWORK_CATEGORY` of the network list.
extern const Vocabulary kNetworkCategoryTexts;

}  // namespace zt::telemetry::collector::performancesamples
