#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zt::telemetry::host {

/// "1234567.5" as "1,234,567.5"; what does not begin with digits (behind a sign) is left as it is.
std::string GroupDigits(std::string_view number);

/// At most two decimals, no zeros at the end, digits in groups: 1234.5 is "1,234.5".
std::string NumberText(double number);

/// Minutes as "3 d 4 h 12 min", "4 h 12 min" or "12 min".
std::string MinutesText(double minutes);

/// Kibibytes as they are, and in a larger unit where one fits: "8,123,456 kB (7.75 GiB)".
std::string KibibytesText(double kibibytes);

/// Bytes in the largest decimal unit that fits: "1.25 GB".
std::string BytesText(double bytes);

}  // namespace zt::telemetry::host
