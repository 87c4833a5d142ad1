#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zt::telemetry::contract::upload::log {
class PcLogPerformanceSamplesAsCDM;
}

namespace zt::telemetry::fleet {

/// The topics of upload records. Whoever reads one of live, thermal or network records finds nothing in it but that
/// kind's sections, and need not prepare for the others; what is of several kinds, or of none that is known here, goes
/// to the topic of mixed ones.
enum class UploadTopic : std::uint8_t { kMixed = 0, kLive = 1, kThermal = 2, kNetwork = 3 };

/// What follows the name of the mixed records' topic in the names of the others.
constexpr std::array<std::string_view, 4> kUploadTopicSuffixes = {"", ".live", ".thermal", ".network"};

/// The topic for what a record's sections are: those of `hw_info` and `operating_system_info`.
UploadTopic UploadTopicOf(const contract::upload::log::PcLogPerformanceSamplesAsCDM& record);

}  // namespace zt::telemetry::fleet
