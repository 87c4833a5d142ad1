#pragma once

#include <sqlite3.h>

namespace zt::telemetry::collector::performancesamples {

/// Puts an indexed copy of the sample tables before the tables themselves, for this connection only, so that the
/// summary query's time grows with the rows instead of with their square. The file is read once, at one moment, and not
/// written.
///
/// False when a step fails, and when the query over copies could give other results than over these tables; the
/// connection is of no further use then.
bool MakeSampleCopies(sqlite3* database);

}  // namespace zt::telemetry::collector::performancesamples
