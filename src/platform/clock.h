#pragma once

#include <cstdint>

/// The system's wall clock and time zone. Offsets are east of UTC, in minutes.
namespace zt::telemetry::collector::performancesamples::platform {

/// Seconds since 1970-01-01 00:00:00 UTC.
std::int64_t CurrentTime();

/// Offset of local time from UTC at the moment `utc_seconds`, daylight saving included.
std::int32_t LocalOffsetMinutes(std::int64_t utc_seconds);

/// The zone's standard offset from UTC, daylight saving left out, as in force at the moment `utc_seconds`.
std::int32_t StandardOffsetMinutes(std::int64_t utc_seconds);

}  // namespace zt::telemetry::collector::performancesamples::platform
