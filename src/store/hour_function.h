#pragma once

#include <sqlite3.h>

namespace zt::telemetry::collector::performancesamples {

/// Gives this connection a faster `strftime(format, time)` with the same results. Reading a time and writing it again
/// is most of what a row of the summary costs; of a plain time its hour can be read off.
///
/// A time that means the moment of reading ("now") is an error: it would not be the same in the next statement.
bool UseFastHours(sqlite3* database);

}  // namespace zt::telemetry::collector::performancesamples
