#pragma once

#include <string>

namespace zt::telemetry::collector::performancesamples {

/// Identity of a live record: serial number, "_" and time text, at most 30 bytes. With a serial number of ten
/// characters that is the time to the second; a longer one cuts the time.
std::string LiveCollectionId(const std::string& serial_number, const std::string& time);

/// Identity of an hourly record: the hour (the first 13 bytes of `hour_window`, such as "2024-05-01T10"), "H_", serial
/// number and `suffix`, at most 30 bytes. A serial number of more than 12 characters cuts the suffix.
std::string HourlyCollectionId(const std::string& hour_window, const std::string& serial_number,
                               const std::string& suffix);

}  // namespace zt::telemetry::collector::performancesamples
