#pragma once

#include <sqlite3.h>

#include <string_view>

namespace zt::telemetry::collector::performancesamples {

/// Gives this connection a faster `strftime(format, time)` with the same results. Reading a time and writing it again
/// is most of what a row of the summary costs; of a plain time its hour can be read off.
///
/// A time that means the moment of reading ("now") is an error: it would not be the same in the next statement.
bool UseFastHours(sqlite3* database);

/// The part of a stored time that tells its hour, "2026-03-07T12"; empty for a time whose hour takes a calculation.
std::string_view HourPart(std::string_view date_time);

}  // namespace zt::telemetry::collector::performancesamples
