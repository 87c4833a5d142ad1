#pragma once

#include <cstdint>
#include <string>

namespace zt::telemetry::collector::performancesamples {

/// The moment `created_100ns` (units of 100 ns since 1970, UTC) as "2026-03-07T10:00:00-03:00": local wall-clock time,
/// then the difference between the hours and between the minutes that a local and a UTC clock show, each for itself and
/// without regard to the date. Where the two clocks stand on different days or in a zone of half an hour that is not
/// the zone's offset: 22:30 of one day at -03:00 is 01:30 of the next, and gives "+21:00". Analyses undo it.
///
/// Empty for a moment that the calendar functions of the C library do not know: before 1970 or after the year 9999.
std::string StartTimeText(std::int64_t created_100ns);

}  // namespace zt::telemetry::collector::performancesamples
