#pragma once

#include <cstdint>
#include <string>

/// The two time texts of a record. Both carry local wall-clock digits.
namespace zt::telemetry::collector::performancesamples {

/// The moment `utc_seconds` (since 1970) as "2025-07-15T12:20:42-03:00": local wall-clock time with daylight saving,
/// then the zone's standard offset, without daylight saving, in whole hours cut toward zero (+05:30 gives "+05:00").
/// Both oddities are what analyses expect. Empty for a moment before the year 1900 or beyond the calendar.
std::string OffsetForm(std::int64_t utc_seconds);

/// The offset form of the present moment.
std::string CurrentOffsetForm();

/// The offset form's wall-clock digits with ".000Z" after them; the offset is not applied. Empty when `offset_form` is
/// not exactly of that form or names no valid calendar time.
std::string RecordForm(const std::string& offset_form);

/// The record form of the present moment.
std::string CurrentRecordForm();

}  // namespace zt::telemetry::collector::performancesamples
